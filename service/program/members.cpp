#include "members.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <zvctrl/zvc_storage.h>

namespace zvprogram {

using nlohmann::json;

bool is_true(const json &value)
{
    return value.is_boolean() && value.get<bool>();
}

bool is_bool(const json &value)
{
    return value.is_boolean();
}

bool is_number(const json &value)
{
    return value.is_number_unsigned() && value.get<uint64_t>() <= UINT32_MAX;
}

bool is_option(const json &value)
{
    return is_number(value) || value.is_string();
}

bool is_file(const json &value)
{
    if (!value.is_string()) {
        return false;
    }
    const auto &name = value.get_ref<const std::string &>();
    return !name.empty() && name.size() <= STORAGE_NAME_MAX &&
           std::ranges::none_of(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string misfit(std::span<const JsonMember> members, const json &object)
{
    for (const auto &[name, value] : object.items()) {
        const auto known = std::ranges::find(members, name, &JsonMember::name);
        if (known == members.end()) {
            return "\"" + name + "\" is no member of this body";
        }
        if (!known->fits(value)) {
            return "\"" + name + "\" is to be " + known->shape;
        }
    }
    for (const JsonMember &member : members) {
        if (member.required && !object.contains(member.name)) {
            return std::string("\"") + member.name + "\" is missing";
        }
    }
    return "";
}

std::string option_name(const json &value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

} // namespace zvprogram
