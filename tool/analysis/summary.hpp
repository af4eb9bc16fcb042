#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "tool/report/record_report.hpp"

namespace ztdecode::tool {

// What is in traces, on one page.
class Summary {
  public:
    std::unique_ptr<Report> report(std::string_view file);
    void write(Text& out) const;

  private:
    class OfFile;

    std::uint64_t lines_ = 0;
    std::map<std::string, std::uint64_t, std::less<>> messages_;  // by link
};

}  // namespace ztdecode::tool
