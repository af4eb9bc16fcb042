#include <string>

#include "tool/analysis/rules.hpp"

// Objects that are changed although they are not there. Objects may stem from before the trace: that one was
// never created is said only where the terminal has started in the trace, and of classes of which the trace
// creates some.

namespace ztdecode::tool {

namespace {

std::string named(const Values& values) {
    return std::string(values.shown("class")) + " " + std::string(values.shown("object_id"));
}

}  // namespace

void Objects::message(const Heard& heard, Found& found) {
    const std::string_view name = heard.name();
    if (heard.starts()) {
        forget();
        all_known_ = true;
        started_ = heard.standing;
        return;
    }
    if (name == "widgets_gc") {
        forget();
        return;
    }
    const auto object_class = heard.values.number("class");
    const auto object = heard.values.number("object_id");
    if (!object_class || !object) return;
    const Id id{*object_class, *object};
    if (heard.to_system()) {
        if (name == "error_create") objects_.erase(id);
    } else if (name == "create") {
        created(id);
    } else if (name == "delete") {
        deleted(heard, id);
    } else if (name == "set_property" || name == "insert_item" || name == "delete_item") {
        changed(heard, id, found);
    }
}

void Objects::changed(const Heard& heard, const Id& id, Found& found) {
    if (const auto by = deleted_.find(id); by != deleted_.end()) {
        found.add("deleted-object", heard.standing, {by->second, heard.standing},
                  std::string(heard.name()) + " of " + named(heard.values) + ", which was deleted");
        created(id);  // said once
    } else if (all_known_ && classes_.contains(id.first) && !objects_.contains(id)) {
        found.add("unknown-object", heard.standing, {started_, heard.standing},
                  std::string(heard.name()) + " of " + named(heard.values) +
                      ", which was not created since the terminal started");
        created(id);
    }
}

void Objects::created(const Id& id) {
    if (objects_.size() >= most) forget();
    objects_.insert(id);
    classes_.insert(id.first);
    deleted_.erase(id);
}

void Objects::deleted(const Heard& heard, const Id& id) {
    if (deleted_.size() >= most) deleted_.clear();
    objects_.erase(id);
    deleted_.insert_or_assign(id, heard.standing);
}

void Objects::forget() {
    all_known_ = false;
    objects_.clear();
    classes_.clear();
    deleted_.clear();
}

}  // namespace ztdecode::tool
