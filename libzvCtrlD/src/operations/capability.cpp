#include "capability.h"

#include "flat_modes.h"

#include <algorithm>

namespace zv {

namespace {

// Count and values, one byte each.
int32_t take_list(const Payload &answer, const ListRule &rule, ValueList &list, const SourceLocation &where)
{
    if (answer.size == 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, rule.empty, 0);
        return ZV_ERR_INVALID_PARAM;
    }
    const uint8_t count = answer.bytes[0];
    if (count >= answer.size || count < rule.least) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, rule.count, count, answer.size);
        return ZV_ERR_INVALID_PARAM;
    }
    std::copy_n(answer.bytes + 1, count, list.values);
    list.count = count;
    return ZV_OK;
}

} // namespace

constexpr ListRule RES_LIST = {
    0, "REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS error, %d",
    "REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS invalid rsp_size, %d",
    "REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS invalid res_count %d, rsp_size, %d"};
constexpr ListRule FPS_LIST = {1, "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET error, %d",
                               "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET invalid rsp_size, %d",
                               "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET invalid fps_count %d, rsp_size, %d"};
constexpr ListRule FOV_LIST = {0, "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET error, %d",
                               "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET invalid rsp_size, %d",
                               "REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET invalid fov_count %d, rsp_size, %d"};

uint8_t capture_mode_of(int32_t flat_mode, const SourceLocation &where)
{
    const FlatModeRow *mode = find_flat_mode(flat_mode);
    if (mode == nullptr || mode->capture_mode == NO_CAPTURE_MODE) {
        ZV_LOG_AT(where, ZV_LOG_WARN, "No corresponding capture_mode for flat_mode %d", flat_mode);
        return 0;
    }
    return mode->capture_mode;
}

int32_t list_values(zvc_msg_q_context_t *context, CapabilityKey listed, const ListRule &rule, ValueList &list,
                    const SourceLocation &where)
{
    Payload answer;
    const int32_t result =
        remote_send(context, REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS, {listed}, &answer);
    if (result != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, rule.failure, result);
        return result;
    }
    return take_list(answer, rule, list, where);
}

int32_t list_values(zvc_msg_q_context_t *context, const Situation &situation, const FilterQuery &query,
                    const ListRule &rule, ValueList &list, const SourceLocation &where)
{
    Payload answer;
    const int32_t result = remote_send(context, REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET,
                                       {
                                           static_cast<uint8_t>(situation.lens),
                                           situation.ux_mode,
                                           situation.power_profile,
                                           situation.capture_mode,
                                           3, // pairs of key and value
                                           CAP_KEY_RESOLUTION,
                                           low_byte(query.res),
                                           query.filter,
                                           query.filter_value,
                                           CAP_KEY_VIDEO_PROFILE,
                                           static_cast<uint8_t>(situation.video_profile),
                                           0,
                                           query.listed,
                                       },
                                       &answer);
    if (result != ZV_OK) {
        if (result != ZV_ERR_NOT_SUPPORTED) {
            ZV_LOG_AT(where, ZV_LOG_ERROR, rule.failure, result);
        }
        return result;
    }
    return take_list(answer, rule, list, where);
}

} // namespace zv
