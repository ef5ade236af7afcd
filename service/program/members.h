// The members of a JSON object that came from outside.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <span>
#include <string>

namespace zvprogram {

// A member that an object may have.
struct JsonMember {
    const char *name;
    bool required;
    bool (*fits)(const nlohmann::json &value);
    const char *shape; // "a number or a text"
};

bool is_true(const nlohmann::json &value);
bool is_bool(const nlohmann::json &value);
bool is_number(const nlohmann::json &value); // whole, of 32 bits, without a sign
bool is_option(const nlohmann::json &value); // a number or a text
bool is_file(const nlohmann::json &value);   // the name of a file, as the firmware takes it

// As the members above have them.
inline constexpr JsonMember OPTION_MEMBER = {"option", true, is_option, "an option's number or text"};
inline constexpr JsonMember FORCE_MEMBER = {"force", false, is_bool, "true or false"};
inline constexpr JsonMember FILE_MEMBER = {"file", true, is_file,
                                           "a name of the media folder, such as \"100ABCDE/CLIP0001.MP4\""};
inline constexpr JsonMember OFFSET_MEMBER = {"offset_ms", true, is_number, "a number of milliseconds"};
inline constexpr JsonMember REMOVE_MEMBER = {"remove", false, is_bool, "true or false"};

// What is wrong with an object that is to have these members and no others; empty where nothing is.
std::string misfit(std::span<const JsonMember> members, const nlohmann::json &object);

// What an option of is_option() is called: the text, or the number's digits.
std::string option_name(const nlohmann::json &value);

} // namespace zvprogram
