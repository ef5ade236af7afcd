#include "zvc_multishot.h"

#include "white_balance.h"

#include <iterator>

using namespace zv;

namespace {

// Messages of this file end in a line feed.

constexpr int32_t ISO_MAX = 5;
constexpr int32_t TIMELAPSE_RATE_MAX = 11;
constexpr int32_t NIGHTLAPSE_RATE_MAX = 13; // two codes more than have an interval
constexpr int32_t NIGHTLAPSE_RATE_AUTO = 9;

// The interval of each night lapse rate code, in seconds; 0 is Auto.
constexpr uint16_t zvc_multishot_nightlapse_rate_map[] = {10, 15, 20, 30, 60, 120, 300, 1800, 3600, 0, 4, 5};

// The seconds of each exposure time code; 0 is Auto. Half a second, code 7, counts as 0: no interval lies between.
constexpr int32_t zvc_multishot_shutter_exposure_map_in_seconds[] = {0, 2, 5, 10, 15, 20, 30, 0, 1};

} // namespace

int32_t zvc_multishot_vellix_reset(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_MULTISHOT_VELLIX_RESET);
}

int32_t zvc_multishot_timelapse_rate_set(zvc_msg_q_context_t *context, int32_t rate)
{
    return remote_set(context, REMOTE_MULTISHOT_TIMELAPSE_RATE_SET, rate,
                      {"timelapse_rate, %d\n", TIMELAPSE_RATE_MAX, "invalid timelapse_rate, %d\n"});
}

int32_t zvc_multishot_nightlapse_rate_set(zvc_msg_q_context_t *context, int32_t rate)
{
    return remote_set(context, REMOTE_MULTISHOT_NIGHTLAPSE_RATE_SET, rate,
                      {"nightlapse_rate, %d\n", NIGHTLAPSE_RATE_MAX, "invalid nightlapse_rate, %d\n"});
}

int32_t zvc_multishot_nightlapse_rate_get(zvc_msg_q_context_t *context, int32_t *rate)
{
    return remote_get(context, REMOTE_MULTISHOT_NIGHTLAPSE_RATE_GET, rate, "get nightlapse_rate, %d\n", READ_TEXTS_LF);
}

int32_t zvc_multishot_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_MULTISHOT_ISO_MAX_GET, iso, "get iso_max, %d\n", READ_TEXTS_LF);
}

int32_t zvc_multishot_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_MULTISHOT_ISO_MAX_SET, iso, {"iso_max, %d\n", ISO_MAX, "invalid iso_max, %d\n"});
}

int32_t zvc_multishot_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_MULTISHOT_ISO_MIN_GET, iso, "get iso_min, %d\n", READ_TEXTS_LF);
}

int32_t zvc_multishot_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_MULTISHOT_ISO_MIN_SET, iso, {"iso_min, %d\n", ISO_MAX, "invalid iso_min, %d\n"});
}

int32_t zvc_multishot_nightlapse_rate_best_fit(zvc_msg_q_context_t *context, int32_t exposure, int32_t rate)
{
    if (static_cast<uint32_t>(rate) >= std::size(zvc_multishot_nightlapse_rate_map) ||
        static_cast<uint32_t>(exposure) >= std::size(zvc_multishot_shutter_exposure_map_in_seconds)) {
        ZV_LOG(ZV_LOG_ERROR, "invalid exposure/nightlapse_rate, %d,%d\n", exposure, rate);
        return ZV_ERR_INVALID_PARAM;
    }
    if (zvc_multishot_nightlapse_rate_map[rate] > zvc_multishot_shutter_exposure_map_in_seconds[exposure]) {
        return ZV_OK;
    }
    const int32_t result = zvc_multishot_nightlapse_rate_set(context, NIGHTLAPSE_RATE_AUTO);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_multishot_set_nightlapse_rate %d\n", result);
    }
    return result;
}

int32_t zvc_multishot_set_white_balance_best_fit(zvc_msg_q_context_t *context, [[maybe_unused]] uint8_t exposure)
{
    int32_t white_balance = WHITE_BALANCE_AUTO;
    read_white_balance(context, REMOTE_MULTISHOT_WHITE_BALANCE_GET,
                       "zvc_multishot_white_balance_get %d, use default AUTO white balance\n", white_balance);
    return ZV_OK;
}
