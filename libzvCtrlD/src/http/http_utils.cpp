#include "http_utils.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <ios>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr int32_t STATUS_OK = 200;
constexpr int32_t STATUS_NO_CONTENT = 204;
constexpr char NOT_HEXADECIMAL = '?'; // what "%" decodes to then

struct ResponseCode {
    int32_t code;
    char text[40];
};

constexpr ResponseCode response_codes[] = {
    {100, "100 Continue\r\n"},
    {101, "101 Switching Protocols\r\n"},
    {200, "200 OK\r\n"},
    {201, "201 Created\r\n"},
    {202, "202 Accepted\r\n"},
    {203, "203 Non-Authoritative Information\r\n"},
    {204, "204 No Content\r\n"},
    {205, "205 Reset Content\r\n"},
    {206, "206 Partial Content\r\n"},
    {300, "300 Multiple Choices\r\n"},
    {301, "301 Moved Permanently\r\n"},
    {302, "302 Found\r\n"},
    {303, "303 See Other\r\n"},
    {304, "304 Not Modified\r\n"},
    {305, "305 Use Proxy\r\n"},
    {307, "307 Temporary Redirect\r\n"},
    {400, "400 Bad Request\r\n"},
    {401, "401 Unauthorized\r\n"},
    {402, "402 Payment Required\r\n"},
    {403, "403 Forbidden\r\n"},
    {404, "404 Not Found\r\n"},
    {405, "405 Method Not Allowed\r\n"},
    {406, "406 Not Acceptable\r\n"},
    {407, "407 Proxy Authentication Required\r\n"},
    {408, "408 Request Timeout\r\n"},
    {409, "409 Conflict\r\n"},
    {410, "410 Gone\r\n"},
    {411, "411 Length Required\r\n"},
    {412, "412 Precondition Failed\r\n"},
    {413, "413 Request Entity Too Large\r\n"},
    {414, "414 Request-URI Too Long\r\n"},
    {415, "415 Unsupported Media Type\r\n"},
    {416, "416 Requested Range Not Satisfiable\r\n"},
    {417, "417 Expectation Failed\r\n"},
    {500, "500 Internal Server Error\r\n"},
    {501, "501 Not Implemented\r\n"},
    {502, "502 Bad Gateway\r\n"},
    {503, "503 Service Unavailable\r\n"},
    {504, "504 Gateway Timeout\r\n"},
    {505, "505 HTTP Version Not Supported\r\n"},
};

// Unformatted, so that a width or base that the caller has set on the stream does not show.
void write(std::stringstream &stream, std::string_view text)
{
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void write_head(std::stringstream &stream, int32_t status)
{
    write(stream, "HTTP/1.1 ");
    write(stream, get_http_response_code_string(status));
    write(stream, "Content-Type: application/json\r\n");
}

const char *or_else(const char *text, const char *fallback)
{
    return text != nullptr ? text : fallback;
}

} // namespace

const char *get_http_response_code_string(int32_t code)
{
    for (const ResponseCode &row : response_codes) {
        if (row.code == code) {
            return row.text;
        }
    }
    return "";
}

void http_output_success_header(std::stringstream &stream)
{
    write_head(stream, STATUS_OK);
}

void http_output_content_length(std::stringstream &stream, uint32_t length)
{
    char digits[sizeof "4294967295"];
    const char *end = std::to_chars(std::begin(digits), std::end(digits), length).ptr;
    write(stream, "Content-Length: ");
    write(stream, {digits, end});
    write(stream, "\r\n\r\n");
}

void http_output_empty_json(std::stringstream &stream)
{
    constexpr std::string_view BODY = "{}\n";
    http_output_content_length(stream, BODY.size());
    write(stream, BODY);
}

void http_print_error_response_ex(std::stringstream &stream, const char *path_info, const char *query_string,
                                  int32_t status, int32_t error_code, const char *error_message, const char *function,
                                  int32_t line)
{
    std::string body;
    if (status != STATUS_NO_CONTENT) {
        const std::string_view message = or_else(error_message, " ");
        const int32_t result = ss_printf(body,
                                         "{\n"
                                         "\"version\": \"6.00\",\n"
                                         "\"path_info\": \"%s\",\n"
                                         "\"query_string\": \"%s\",\n"
                                         "\"error_code\":%d,\n"
                                         "\"error_msg\": \"%.*s\",\n"
                                         "\"function\": \"%s\",\n"
                                         "\"line\": %d\n"
                                         "}\n",
                                         or_else(path_info, ""), or_else(query_string, ""), error_code,
                                         static_cast<int>(std::min(message.find("\r\n"), message.size())),
                                         message.data(), or_else(function, " "), line);
        if (result != 0) {
            ZV_LOG(ZV_LOG_ERROR, "cannot make the response to an error, status %d", status);
            stream.setstate(std::ios::badbit);
            return;
        }
    }
    write_head(stream, status);
    http_output_content_length(stream, static_cast<uint32_t>(body.size()));
    write(stream, body);
}

int32_t parseParam(const char *query, const char *key, std::string &value)
{
    const char *found = strstr(query, key);
    if (found == nullptr) {
        return 0;
    }
    const char *start = found + strlen(key);
    try {
        value.assign(start, strcspn(start, "&"));
    } catch (const std::exception &) {
        ZV_LOG(ZV_LOG_ERROR, "no memory for the value of %s", key);
        return 0;
    }
    return 1;
}

std::string urlDecode(std::string text)
{
    std::string decoded;
    const auto length = static_cast<size_t>(std::max(static_cast<int32_t>(text.size()), 0));
    for (size_t i = 0; i < length; ++i) {
        if (text[i] == '%') {
            char digits[3] = {};
            text.copy(digits, 2, i + 1);
            char *end = digits;
            const unsigned long byte = strtoul(digits, &end, 16);
            decoded += end != digits ? static_cast<char>(byte) : NOT_HEXADECIMAL;
            i += 2;
        } else {
            decoded += text[i] == '+' ? ' ' : text[i];
        }
    }
    return decoded;
}

int32_t ss_printf(std::string &text, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    int result = vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (result >= 0) {
        try {
            std::string formatted(static_cast<size_t>(result), '\0');
            result = vsnprintf(formatted.data(), formatted.size() + 1, format, again);
            if (result >= 0) {
                text.append(formatted, 0, formatted.find('\0'));
            }
        } catch (const std::exception &) { // no memory
            result = -1;
        }
    }
    va_end(again);
    return result < 0 ? -1 : 0;
}

uint64_t htonll(uint64_t value)
{
    return __builtin_bswap64(value);
}

uint64_t ntohll(uint64_t value)
{
    return __builtin_bswap64(value);
}
