/*
 * http_utils.h - HTTP response texts, query parameters, and other text tools of a web front-end
 *
 * A good JSON response is http_output_success_header, http_output_content_length with the body's length, and the body;
 * where there is none, http_output_empty_json takes the place of the last two. The writers append to the caller's
 * stream and leave its formatting alone. No text is escaped: what comes in goes out.
 *
 * A stream that runs out of memory has failed, which a caller sees before it sends the response: bad() is then true.
 * Nothing here keeps state or blocks: any thread may call, one thread per stream or string.
 */
#ifndef ZVCTRL_HTTP_UTILS_H
#define ZVCTRL_HTTP_UTILS_H

#include "zvDbg.h"

#ifdef __cplusplus
#include <sstream>
#include <string>

extern "C" {
#endif

/*
 * A status code, its reason and CRLF, such as "200 OK\r\n". The codes are those of the first HTTP/1.1: 100, 101, 200 to
 * 206, 300 to 305, 307, 400 to 417 and 500 to 505. Any other, such as 308, 429 or 451, gives the empty text.
 */
ZV_API const char *get_http_response_code_string(int32_t code);

/* The number with its eight bytes reversed: host order to network order and back, on little-endian machines. */
ZV_API uint64_t htonll(uint64_t value);
ZV_API uint64_t ntohll(uint64_t value);

#ifdef __cplusplus

#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage" /* plain names, also for C++ callers' functions */
#endif

/* The status line of a good response, and the content type JSON. The header block stays open. */
ZV_API void http_output_success_header(std::stringstream &stream);

/* The length of the body in bytes, and the end of the header block. */
ZV_API void http_output_content_length(std::stringstream &stream, uint32_t length);

/* Length, end of the header block, and the body "{}\n". Goes after http_output_success_header. */
ZV_API void http_output_empty_json(std::stringstream &stream);

/*
 * A whole error response: status line, headers, and a JSON body that says what went wrong and where in the front-end.
 * A `status` of 204 has no body. A status that get_http_response_code_string does not know makes a response without a
 * status line, which is no valid HTTP. The message ends at its first CRLF. A null message or function is published as
 * one blank, a null path or query as the empty text. A body that cannot be made, for lack of memory, is logged at
 * ERROR: nothing is written then, and the stream's badbit is set.
 */
ZV_API void http_print_error_response_ex(std::stringstream &stream, const char *path_info, const char *query_string,
                                         int32_t status, int32_t error_code, const char *error_message,
                                         const char *function, int32_t line);

/*
 * The value after the first `key` in `query`, up to "&" or the end, not decoded. `key` includes its "=" and is found
 * anywhere: "id=" also in "uid=4". Both are valid texts. Returns 1, or 0 when there is no such key, and also, with an
 * ERROR line, without memory for the value; `value` is then untouched.
 */
ZV_API int32_t parseParam(const char *query, const char *key, std::string &value);

/*
 * Decodes "%" with two hexadecimal digits, and "+" for a blank. "%" always takes the next two characters, or as many as
 * there are, and gives one byte, which can be 0; where they are not a number it is "?". Lets std::bad_alloc pass.
 */
ZV_API std::string urlDecode(std::string text);

/*
 * Formats as printf does, without a limit, and appends the result to `text`, up to its first zero byte. Returns 0, or
 * -1 for a format that fails or a lack of memory; `text` is then untouched.
 */
ZV_API int32_t ss_printf(std::string &text, const char *format, ...) __attribute__((format(printf, 2, 3)));

#ifdef __clang__
#pragma clang diagnostic pop
#endif
}
#endif

#endif
