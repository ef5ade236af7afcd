#include "http_utils.h"

#include <gtest/gtest.h>
#include <iomanip>

namespace {

// A stream whose state would show in formatted output.
std::stringstream hostile_stream()
{
    std::stringstream stream;
    stream << "before|" << std::hex << std::setfill('*') << std::setw(30);
    return stream;
}

TEST(HttpUtils, ResponseCodesAreTextsWithTheirLineEnd)
{
    EXPECT_STREQ("100 Continue\r\n", get_http_response_code_string(100));
    EXPECT_STREQ("307 Temporary Redirect\r\n", get_http_response_code_string(307));
    EXPECT_STREQ("416 Requested Range Not Satisfiable\r\n", get_http_response_code_string(416));
    EXPECT_STREQ("505 HTTP Version Not Supported\r\n", get_http_response_code_string(505));
    for (const int32_t unknown : {306, 418, 0, -1, 506}) {
        EXPECT_STREQ("", get_http_response_code_string(unknown));
    }
}

TEST(HttpUtils, BuildsAGoodResponse)
{
    std::stringstream stream = hostile_stream();
    http_output_success_header(stream);
    http_output_empty_json(stream);
    http_output_content_length(stream, 4294967295);
    EXPECT_EQ("before|HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 3\r\n\r\n{}\n"
              "Content-Length: 4294967295\r\n\r\n",
              stream.str());
}

TEST(HttpUtils, BuildsAnErrorResponse)
{
    std::stringstream stream = hostile_stream();
    http_print_error_response_ex(stream, "/settings", "p=1", 400, -3, "value out of range", "apply_setting", 120);
    EXPECT_EQ("before|HTTP/1.1 400 Bad Request\r\nContent-Type: application/json\r\nContent-Length: 165\r\n\r\n"
              "{\n\"version\": \"6.00\",\n\"path_info\": \"/settings\",\n\"query_string\": \"p=1\",\n"
              "\"error_code\":-3,\n\"error_msg\": \"value out of range\",\n\"function\": \"apply_setting\",\n"
              "\"line\": 120\n}\n",
              stream.str());

    stream.str({});
    http_print_error_response_ex(stream, nullptr, nullptr, 418, 0, "a \"b\"\nc\r\nd\r\ne", nullptr, -1);
    EXPECT_EQ("HTTP/1.1 Content-Type: application/json\r\nContent-Length: 128\r\n\r\n"
              "{\n\"version\": \"6.00\",\n\"path_info\": \"\",\n\"query_string\": \"\",\n\"error_code\":0,\n"
              "\"error_msg\": \"a \"b\"\nc\",\n\"function\": \" \",\n\"line\": -1\n}\n",
              stream.str());

    stream.str({});
    http_print_error_response_ex(stream, "/p", "q", 204, 1, nullptr, "f", 1);
    EXPECT_EQ("HTTP/1.1 204 No Content\r\nContent-Type: application/json\r\nContent-Length: 0\r\n\r\n", stream.str());
}

TEST(HttpUtils, FindsParameters)
{
    struct Case {
        const char *query;
        const char *key;
        int32_t found;
        const char *value;
    };
    const Case cases[] = {
        {"a=1&b=2", "a=", 1, "1"},     {"a=1&b=2", "b=", 1, "2"},     {"b=2&a=", "a=", 1, ""},
        {"uid=4&id=5", "id=", 1, "4"}, {"a=%20+&b", "a=", 1, "%20+"}, {"a=1&b=2", "c=", 0, "kept"},
        {"a=1;b=2", "a=", 1, "1;b=2"},
    };
    for (const Case &c : cases) {
        std::string value = "kept";
        EXPECT_EQ(c.found, parseParam(c.query, c.key, value)) << c.query;
        EXPECT_EQ(c.value, value) << c.query;
    }
}

TEST(HttpUtils, DecodesUrls)
{
    using namespace std::string_literals;
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},       {"a+b%20c", "a b c"}, {"%41%4a%4A", "AJJ"}, {"%ff", "\xff"}, {"x%00y", "x\0y"s},
        {"%4", "\x04"}, {"a%", "a?"},         {"%zzb", "?b"},       {"%4zb", "\4b"},
    };
    for (const auto &[text, decoded] : cases) {
        EXPECT_EQ(decoded, urlDecode(text)) << text;
    }
}

TEST(HttpUtils, AppendsFormattedText)
{
    std::string text = "x";
    EXPECT_EQ(0, ss_printf(text, "%d-%s", -5, std::string(3000, 'l').c_str()));
    EXPECT_EQ("x-5-" + std::string(3000, 'l'), text);
    text = "x";
    EXPECT_EQ(0, ss_printf(text, "a%cb", 0));
    EXPECT_EQ("xa", text);
    const wchar_t unprintable[] = {static_cast<wchar_t>(0x110000), 0};
    EXPECT_EQ(-1, ss_printf(text, "%ls", unprintable));
    EXPECT_EQ("xa", text);
}

TEST(HttpUtils, TurnsByteOrder)
{
    EXPECT_EQ(0x0807060504030201U, htonll(0x0102030405060708U));
    EXPECT_EQ(0xFFFFFFFFFFFFFF00U, ntohll(0x00FFFFFFFFFFFFFFU));
}

} // namespace
