#pragma once

#include <cstdint>

#include "tool/output/output.hpp"
#include "tool/report/report.hpp"

namespace ztdecode::tool {

// What somebody has to say beneath the texts of messages, in whole lines.
class Remarks {
  public:
    Remarks() = default;
    Remarks(const Remarks&) = delete;
    Remarks& operator=(const Remarks&) = delete;
    virtual ~Remarks() = default;

    // The trail of what was said has values.
    virtual void message(const Said& said, Output& out) = 0;
    virtual void refused(std::uint64_t number, Line line, const Refusal& refusal, Output& out) = 0;
    virtual void end(Output& out) = 0;
};

}  // namespace ztdecode::tool
