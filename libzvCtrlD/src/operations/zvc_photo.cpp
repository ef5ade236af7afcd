#include "zvc_photo.h"

#include "white_balance.h"

#include <iterator>

using namespace zv;

namespace {

// Messages of this file end in a line feed.

constexpr int32_t ISO_MAX = 5;
constexpr uint16_t ISO_NUMBERS[ISO_MAX + 1] = {800, 400, 200, 100, 1600, 3200};
constexpr int32_t OTHER_ISO_NUMBER = 400;

constexpr uint8_t EXPOSURE_AUTO = 0;

} // namespace

int32_t zvc_photo_vellix_reset(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_PHOTO_VELLIX_RESET);
}

int32_t zvc_photo_vellix_iso_number(int32_t iso)
{
    return static_cast<uint32_t>(iso) < std::size(ISO_NUMBERS) ? ISO_NUMBERS[iso] : OTHER_ISO_NUMBER;
}

int32_t zvc_photo_vellix_iso_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_PHOTO_ISO_MAX_GET, iso, "get iso_max, %d\n", READ_TEXTS_LF);
}

int32_t zvc_photo_vellix_iso_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_PHOTO_ISO_MAX_SET, iso, {"iso_max, %d\n", ISO_MAX, "invalid iso_max, %d\n"});
}

int32_t zvc_photo_vellix_iso_min_get(zvc_msg_q_context_t *context, int32_t *iso)
{
    return remote_get(context, REMOTE_PHOTO_ISO_MIN_GET, iso, "get iso_min, %d\n", READ_TEXTS_LF);
}

int32_t zvc_photo_vellix_iso_min_set(zvc_msg_q_context_t *context, int32_t iso)
{
    return remote_set(context, REMOTE_PHOTO_ISO_MIN_SET, iso, {"iso_min, %d\n", ISO_MAX, "invalid iso_min, %d\n"});
}

int32_t zvc_photo_set_white_balance_best_fit(zvc_msg_q_context_t *context, uint8_t exposure)
{
    int32_t white_balance = WHITE_BALANCE_AUTO;
    int32_t result =
        read_white_balance(context, REMOTE_PHOTO_WHITE_BALANCE_GET,
                           "zvc_photo_white_balance_get %d, use default AUTO white balance\n", white_balance);
    if (exposure != EXPOSURE_AUTO) {
        result = white_balance != WHITE_BALANCE_AUTO ? ZV_OK
                                                     : remote_set(context, REMOTE_PHOTO_WHITE_BALANCE_SET,
                                                                  WHITE_BALANCE_5500K, {"white_balance, %d\n"});
    }
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_photo_white_balance_set %d\n", result);
    }
    return result;
}
