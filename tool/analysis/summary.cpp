#include "tool/analysis/summary.hpp"

namespace ztdecode::tool {

class Summary::OfFile final : public RecordReport {
  public:
    explicit OfFile(Summary& summary) noexcept : summary_(summary) {}

    bool end(const LineTotals& totals, std::uint64_t /*cut*/) override {
        summary_.lines_ += totals.lines;
        return true;
    }

  private:
    void record(const CapturedMessage& /*captured*/, const Record& record) override {
        ++summary_.messages_[std::string(record.part(0).noted->link)];
    }

    Summary& summary_;
};

std::unique_ptr<Report> Summary::report(std::string_view /*file*/) { return std::make_unique<OfFile>(*this); }

void Summary::write(Text& out) const {
    out.print("lines  {-}\n"_cf, lines_);
    for (const auto& [link, messages] : messages_) out.print("{}  {-}\n"_cf, link, messages);
}

}  // namespace ztdecode::tool
