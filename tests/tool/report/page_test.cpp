#include <string>

#include "tool/output/output.hpp"
#include "tool/report/page_rows.hpp"
#include "tool/report/page_writer.hpp"

namespace ztdecode::tool {
namespace {

TEST(PageBytes, NumbersStandInGroupsOfSevenBits) {
    PageBytes bytes;
    bytes.number(0);
    bytes.number(127);
    bytes.number(128);
    bytes.number(300);
    EXPECT_EQ(bytes.view(), std::string("\x00\x7f\x80\x01\xac\x02", 6));
    bytes.cut(0);
    bytes.signed_number(0);
    bytes.signed_number(-1);
    bytes.signed_number(1);
    bytes.signed_number(-64);
    EXPECT_EQ(bytes.view(), std::string("\x00\x01\x02\x7f", 4));
    bytes.cut(0);
    bytes.words("led");
    EXPECT_EQ(bytes.view(), "\x03led");
}

// The JSON that a page has of its trace.
std::string about(const Output& out) {
    const std::string_view page = out.text.view();
    const std::size_t begin = page.find("id=\"trace\">");
    return std::string(page.substr(begin + 11, page.find("</script>", begin) - begin - 11));
}

TEST(PageWriter, SaysWhatOtherAnalysesFound) {
    Output out(-1, false);
    PageWriter page;
    page.begin_file("a<b", out);
    page.other(3, "words");
    page.item(PageWriter::Tab::findings,
              {.text = "</script>\"", .severity = PageWriter::Severity::error, .line = 3, .file = "a<b"});
    page.item(PageWriter::Tab::findings, {.text = "second", .message = 2});
    page.end(out);
    const std::string json = about(out);
    EXPECT_NE(json.find(R"("files":["a\u003cb"],"blocks":[[1,3,0]],"kinds":[["","",2,"no message",0]])"),
              std::string::npos)
        << json;
    EXPECT_NE(
        json.find(
            R"("findings":[{"text":"\u003c/script>\"","severity":"error","line":3,"message":0,"file":"a\u003cb"},)"
            R"({"text":"second","severity":"note","line":0,"message":2,"file":""}])"),
        std::string::npos)
        << json;
    EXPECT_EQ(json.find("\"summary\""), std::string::npos);
}

TEST(PageWriter, BlocksEndWithTheirFile) {
    Output out(-1, false);
    PageWriter page;
    page.begin_file("one", out);
    for (std::uint64_t line = 1; line <= 8193; ++line) page.other(line, "x");
    page.begin_file("two", out);
    page.begin_file("three", out);
    page.refused(7, "09 01", 1, "too short");
    page.end(out);
    EXPECT_NE(about(out).find(
                  R"("rows":8194,"files":["one","two","three"],"blocks":[[8192,1,0],[1,8193,0],[1,7,2]])"),
              std::string::npos)
        << about(out);
}

}  // namespace
}  // namespace ztdecode::tool
