#include "zvc_video.h"

#include "camera_records.h"
#include "capability.h"
#include "remote_call.h"
#include "zvc_setup.h"

#include <algorithm>
#include <iterator>
#include <utility>

using namespace zv;

namespace {

constexpr int32_t RES_MAX = 30;
constexpr int32_t FPS_MAX = 14;
constexpr int32_t FOV_MAX = 11;

constexpr uint16_t CURRENT_SETTINGS_SIZE = 40; // the least of the record that the camera answers

constexpr int32_t ISO_MAX = 9;
constexpr uint16_t ISO_NUMBERS[] = {6400, 1600, 400, 3200, 800, 1200, 1000, 200, 100};
constexpr int32_t OTHER_ISO_NUMBER = 400;

// What cannot be read keeps its default: the query then goes out for the most common camera.
Situation read_situation(zvc_msg_q_context_t *context)
{
    Situation situation;
    int32_t flat_mode = -1;
    if (const int32_t result = zvc_video_get_current_flat_mode(context, &flat_mode); result != ZV_OK) {
        ZV_LOG(ZV_LOG_DEBUG, "zvc_video_get_current_flat_mode error, %d", result);
    }
    situation.capture_mode = capture_mode_of(flat_mode);
    if (const int32_t result = zvc_system_get_lens_type(context, &situation.lens); result != ZV_OK) {
        ZV_LOG(ZV_LOG_WARN, "zvc_system_get_lens_type error, %d", result);
    }
    if (const int32_t result = zvc_setup_get_camera_ux_mode(context, &situation.ux_mode); result != ZV_OK) {
        ZV_LOG(ZV_LOG_WARN, "zvc_setup_get_camera_ux_mode error, %d", result);
    }
    if (const int32_t result = zvc_setup_get_video_format(context, &situation.anti_flicker); result != ZV_OK) {
        ZV_LOG(ZV_LOG_WARN, "zvc_setup_get_video_format error, %d", result);
    }
    if (const int32_t result = zvc_video_get_video_profile(context, &situation.video_profile); result != ZV_OK) {
        ZV_LOG(ZV_LOG_WARN, "zvc_video_get_video_profile error, %d", result);
    }
    return situation;
}

// Turns the wanted frame rate into one that the resolution has: itself if it is offered, otherwise the first one.
int32_t suggest_fps(zvc_msg_q_context_t *context, const Situation &situation, int32_t res, int32_t &fps)
{
    ZV_LOG(ZV_LOG_DEBUG,
           "Querying CAP Remote API filter, lens:%d ux_mode:%d power_profile:%d capture_mode:%d resolution:%d "
           "video_profile:%d anti_flicker:%d",
           situation.lens, situation.ux_mode, situation.power_profile, situation.capture_mode, res,
           situation.video_profile, situation.anti_flicker);
    const auto anti_flicker = static_cast<uint8_t>(situation.anti_flicker);
    ValueList offered;
    const int32_t result =
        list_values(context, situation, {CAP_KEY_FPS, res, CAP_KEY_ANTI_FLICKER, anti_flicker}, FPS_LIST, offered);
    if (result != ZV_OK) {
        return result;
    }
    if (std::find(offered.begin(), offered.end(), fps) == offered.end()) {
        fps = offered.values[0];
    }
    ZV_LOG(ZV_LOG_DEBUG, "Remote Capability Suggested_fps, %d", fps);
    return ZV_OK;
}

int32_t list_fovs(zvc_msg_q_context_t *context, const Situation &situation, int32_t res, int32_t fps, ValueList &list)
{
    ZV_LOG(ZV_LOG_DEBUG,
           "Querying CAP Remote API filter, lens:%d ux_mode:%d power_profile:%d capture_mode:%d resolution:%d "
           "video_profile:%d fps:%d",
           situation.lens, situation.ux_mode, situation.power_profile, situation.capture_mode, res,
           situation.video_profile, fps);
    return list_values(context, situation, {CAP_KEY_FOV, res, CAP_KEY_FPS, low_byte(fps)}, FOV_LIST, list);
}

bool is_horizon(int32_t fov)
{
    return fov == FOV_LINEAR_PLUS_HORIZON_LEVELING || fov == FOV_LINEAR_PLUS_HORIZON_LOCK;
}

// Asks whether the camera would level the horizon in this format.
int32_t query_horizon(zvc_msg_q_context_t *context, int32_t res, int32_t fps, uint8_t fov, bool &consent)
{
    const uint8_t format[] = {low_byte(res), low_byte(fps), fov};
    uint8_t *option = nullptr;
    uint16_t size = 0;
    const int32_t result = zvc_send_remote_api_payload_response(context, group_of(REMOTE_VIDEO_HORIZON_OPTION_GET),
                                                                action_of(REMOTE_VIDEO_HORIZON_OPTION_GET), format,
                                                                sizeof format, &option, &size);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to get horizon supported option, return err:%d", result);
        return result;
    }
    consent = size != 0 && (option[0] == 1 || option[0] == 2);
    return ZV_OK;
}

// Turns the wanted field of view into one that is offered. The order of the list decides: the wanted one does not win
// over the other horizon field of view before it, if the camera consents to that.
int32_t choose_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, const ValueList &offered, int32_t &fov)
{
    if (offered.count == 0) {
        return ZV_OK;
    }
    for (uint8_t i = 0; i < offered.count; ++i) {
        ZV_LOG(ZV_LOG_DEBUG, "FOV Index %d is %d", i, offered.values[i]);
    }
    for (const uint8_t entry : offered) {
        if (entry == fov) {
            ZV_LOG(ZV_LOG_DEBUG, "Reusing new fov same as curr, %d", fov);
            return ZV_OK;
        }
        if (!is_horizon(fov) || !is_horizon(entry)) {
            continue;
        }
        bool consent = false;
        if (const int32_t result = query_horizon(context, res, fps, entry, consent); result != ZV_OK) {
            return result;
        }
        if (consent) {
            fov = entry;
            return ZV_OK;
        }
    }
    fov = offered.values[0];
    return ZV_OK;
}

// The present resolution if it is offered, else the smallest number below it, else the first one.
uint8_t choose_res(int32_t current, const uint8_t *offered, uint16_t count)
{
    uint8_t best = offered[0];
    for (uint16_t i = 0; i < count; ++i) {
        ZV_LOG(ZV_LOG_DEBUG, "resolution %d %d %d", i, current, offered[i]);
        if (offered[i] == current) {
            return offered[i];
        }
        if (offered[i] < current && offered[i] < best) {
            best = offered[i];
        }
    }
    return best;
}

int32_t signed_byte(const uint8_t *record, int offset)
{
    return static_cast<int8_t>(record[offset]);
}

} // namespace

int32_t zvc_video_set_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov)
{
    ZV_LOG(ZV_LOG_DEBUG, "new_res, %d", res);
    uint32_t format = 0;
    if (const int32_t result = zvc_setup_get_video_format(context, &format); result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_setup_get_video_format error, %d", result);
        return result;
    }
    ZV_LOG(ZV_LOG_DEBUG, "new res/ curr fps/ curr fov, %d,%d,%d", res, fps, fov);
    const Situation situation = read_situation(context);

    int32_t suggested_fps = fps;
    ValueList offered_fovs;
    int32_t result = suggest_fps(context, situation, res, suggested_fps);
    if (result == ZV_OK) {
        result = list_fovs(context, situation, res, suggested_fps, offered_fovs);
    }
    if (result == ZV_ERR_NOT_SUPPORTED) {
        return zvc_video_set_res_fps_fov_camera(context, res, fps, fov);
    }
    if (result == ZV_OK) {
        result = choose_fov(context, res, suggested_fps, offered_fovs, fov);
    }
    if (result != ZV_OK) {
        return result;
    }
    ZV_LOG(ZV_LOG_DEBUG, "Setting new res:%d fps:%d fov:%d", res, suggested_fps, fov);
    return zvc_video_set_res_fps_fov_camera(context, res, suggested_fps, fov);
}

int32_t zvc_video_set_res_fps_fov_camera(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov)
{
    ZV_LOG(ZV_LOG_DEBUG, "zvc_video_set_res_fps_fov res/fps/fov, %d,%d,%d", res, fps, fov);
    if (res > RES_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "invalid res, %d", res);
        return ZV_ERR_INVALID_PARAM;
    }
    if (fps > FPS_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "invalid fps, %d", fps);
        return ZV_ERR_INVALID_PARAM;
    }
    if (fov > FOV_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "invalid fov, %d", fov);
        return ZV_ERR_INVALID_PARAM;
    }
    return remote_send(context, REMOTE_VIDEO_RES_FPS_FOV_SET, {low_byte(res), low_byte(fps), low_byte(fov)});
}

int32_t zvc_video_set_easy_res_fps_fov(zvc_msg_q_context_t *context, uint32_t res, uint32_t fps, uint32_t fov)
{
    return zvc_video_set_res_fps_fov_camera(context, static_cast<int32_t>(res), static_cast<int32_t>(fps),
                                            static_cast<int32_t>(fov));
}

int32_t zvc_video_reset_to_valid_res_fps_fov(zvc_msg_q_context_t *context)
{
    int32_t res = 0;
    int32_t fps = 0;
    int32_t fov = 0;
    int32_t result = zvc_video_get_res_fps_fov(context, &res, &fps, &fov);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_video_get_res_fps_fov err=, %d", result);
        return result;
    }
    ZV_LOG(ZV_LOG_DEBUG, "Current res:%d fps:%d fov:%d", res, fps, fov);

    uint8_t offered[UINT8_MAX];
    uint16_t count = 0;
    result = zvc_get_res_list(context, offered, &count);
    ZV_LOG(ZV_LOG_DEBUG, "Number available res in this mode:%d", count);
    if (result == ZV_OK && count == 0) {
        result = ZV_ERR_INVALID_PARAM;
    }
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_get_res_list err=, %d", result);
        return result;
    }

    const uint8_t new_res = choose_res(res, offered, count);
    if (new_res != res) {
        ZV_LOG(ZV_LOG_DEBUG, "cur res not valid, force new resolution= %d ", new_res);
    }
    result = zvc_video_set_res_fps_fov(context, new_res, fps, fov);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_video_set_res_fps_fov err=, %d", result);
    }
    return result;
}

int32_t zvc_get_res_list(zvc_msg_q_context_t *context, uint8_t *list, uint16_t *count)
{
    if (list == nullptr || count == nullptr) {
        return refuse_null_output(SourceLocation::current());
    }
    ValueList offered;
    const int32_t result = list_values(context, CAP_KEY_RESOLUTION, RES_LIST, offered);
    if (result != ZV_OK) {
        return result;
    }
    for (uint8_t i = 0; i < offered.count; ++i) {
        list[i] = offered.values[i];
        ZV_LOG(ZV_LOG_DEBUG, "resolution %d %d", i, list[i]);
    }
    *count = offered.count;
    return ZV_OK;
}

int32_t zvc_video_get_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps, int32_t *fov)
{
    return remote_get_bytes(context, REMOTE_VIDEO_RES_FPS_FOV_GET, {res, fps, fov}, "res/fps/fov, %d,%d,%d");
}

int32_t zvc_video_get_current_res_fps_shutter(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps,
                                              int32_t *shutter)
{
    if (res == nullptr || fps == nullptr || shutter == nullptr) {
        ZV_LOG(ZV_LOG_DEBUG, "NULL input res %p, fps %p, shutter %p", static_cast<void *>(res),
               static_cast<void *>(fps), static_cast<void *>(shutter));
    }
    const std::pair<int32_t *, int> outputs[] = {
        {res, SETTINGS_VIDEO_RESOLUTION}, {fps, SETTINGS_VIDEO_FPS}, {shutter, SETTINGS_VIDEO_EXPOSURE_TIME}};
    for (const auto &[output, offset] : outputs) {
        if (output != nullptr) {
            *output = -1;
        }
    }
    ZV_LOG(ZV_LOG_DEBUG, "ZVCONTROL_GET_ALL_SETTINGS:");
    uint8_t *record = nullptr;
    Payload answer;
    int32_t result = zvc_send_remote_api_for_response(context, group_of(REMOTE_SETUP_ALL_SETTINGS_GET),
                                                      action_of(REMOTE_SETUP_ALL_SETTINGS_GET), &record, &answer.size);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_remote_api_for_response error, %d", result);
        return result;
    }
    result = check_size(answer, SETTINGS_VIDEO_EXPOSURE_TIME + 1, READ_TEXTS, SourceLocation::current());
    for (const auto &[output, offset] : outputs) {
        if (result == ZV_OK && output != nullptr) {
            *output = signed_byte(record, offset);
        }
    }
    return result;
}

int32_t zvc_video_get_current_flat_mode(zvc_msg_q_context_t *context, int32_t *flat_mode)
{
    if (flat_mode == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null flat_mode");
        return ZV_ERR_INVALID_PARAM;
    }
    Payload answer;
    const int32_t result = remote_read(context, REMOTE_SETUP_CURRENT_SETTINGS_GET, CURRENT_SETTINGS_SIZE, READ_TEXTS,
                                       answer, SourceLocation::current());
    if (result == ZV_OK) {
        *flat_mode = signed_byte(answer.bytes, SETTINGS_SETUP_CURRENT_FLAT_MODE);
        ZV_LOG(ZV_LOG_INFO, "flat_mode, %d", *flat_mode);
    }
    return result;
}

int32_t zvc_video_set_res(zvc_msg_q_context_t *context, int32_t res)
{
    return remote_set(context, REMOTE_VIDEO_RES_SET, res);
}

int32_t zvc_video_set_fps(zvc_msg_q_context_t *context, int32_t fps)
{
    return remote_set(context, REMOTE_VIDEO_FPS_SET, fps);
}

int32_t zvc_video_set_fov(zvc_msg_q_context_t *context, int32_t fov)
{
    return remote_set(context, REMOTE_VIDEO_FOV_SET, fov);
}

int32_t zvc_video_vellix_reset(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_VIDEO_VELLIX_RESET);
}

int32_t zvc_video_vellix_iso_number(int32_t iso)
{
    return static_cast<uint32_t>(iso) < std::size(ISO_NUMBERS) ? ISO_NUMBERS[iso] : OTHER_ISO_NUMBER;
}

int32_t zvc_video_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_VIDEO_ISO_MAX_GET, iso, "get iso_max, %d");
}

int32_t zvc_video_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_VIDEO_ISO_MAX_SET, iso, {"iso_max, %d", ISO_MAX, "invalid iso_max, %d"});
}

int32_t zvc_video_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_VIDEO_ISO_MIN_GET, iso, "get iso_min, %d");
}

int32_t zvc_video_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_VIDEO_ISO_MIN_SET, iso, {"iso_min, %d", ISO_MAX, "invalid iso_min, %d"});
}

int32_t zvc_video_vellix_iso_mode_set(zvc_msg_q_context_t *context, int32_t mode)
{
    return remote_set(context, REMOTE_VIDEO_ISO_MODE_SET, mode, {"iso_mode, %d"});
}

int32_t zvc_video_get_video_profile(zvc_msg_q_context_t *context, uint32_t *profile)
{
    return remote_get(context, REMOTE_VIDEO_PROFILE_GET, profile, "get video_profile, %d");
}

int32_t zvc_video_get_video_bit_rate(zvc_msg_q_context_t *context, uint32_t *rate)
{
    return remote_get(context, REMOTE_VIDEO_BIT_RATE_GET, rate, "get video_bit_rate, %d");
}

int32_t zvc_video_set_video_bit_rate(zvc_msg_q_context_t *context, uint32_t rate)
{
    return remote_set(context, REMOTE_VIDEO_BIT_RATE_SET, static_cast<int32_t>(rate), {"bit_rate, %d"});
}

int32_t zvc_video_get_video_bit_depth(zvc_msg_q_context_t *context, uint32_t *depth)
{
    return remote_get(context, REMOTE_VIDEO_BIT_DEPTH_GET, depth, "get video_bit_depth, %d");
}

int32_t zvc_video_set_video_bit_depth(zvc_msg_q_context_t *context, uint32_t depth)
{
    return remote_set(context, REMOTE_VIDEO_BIT_DEPTH_SET, static_cast<int32_t>(depth), {"bit_depth, %d"});
}

int32_t zvc_video_set_rushlapse_speed_ramp(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_SET, value);
}

int32_t zvc_video_set_rushlapse_speed_ramp_active(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_ACTIVE_SET, value);
}
