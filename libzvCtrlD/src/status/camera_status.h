/*
 * camera_status.h - the snapshot records, and the status documents made from them
 *
 * A status is a number or text that the camera publishes under a fixed id, 0 to 118; some ids are free. A front-end
 * reads the record from the daemon (zvcontrol_if.h) and gets JSON from it: all values, or those whose text has changed
 * since it last looked.
 *
 * Nothing here waits for a peer; five values, and a sixth while the Linux core is active, are asked of the system
 * information service each time. Any thread may call, one thread a stream, cache or vector. For the whole process the
 * library remembers the last good battery percentage and the vellix default of the last flat mode that has one: they
 * are published again while the camera reports none.
 */
#ifndef CAMERA_STATUS_H
#define CAMERA_STATUS_H

#include "zvDbg.h"

#ifdef __cplusplus
#include <sstream>
#include <string>
#include <vector>

extern "C" {
#endif

/* ---- Snapshot records ---------------------------------------------------------------------------------------------
 * What the daemon answers, read in place: no alignment, multi-byte numbers little-endian. Fields are reached by the
 * offsets below; a byte without an offset is the firmware's own.
 */

/* The camera's state. */
typedef struct appc_system_all_status {
    uint8_t bytes[394];
} appc_system_all_status;

/* The camera's settings. */
typedef struct appc_setup_all_settings {
    uint8_t bytes[238];
} appc_setup_all_settings;

typedef struct zvcontrol_system_settings {
    uint8_t bytes[2];
} zvcontrol_system_settings;

/* The three above in this order: status at 0, settings at 394, system settings at 632. */
typedef struct all_status_settings_t {
    uint8_t bytes[634];
} all_status_settings_t;

enum {
    ALL_STATUS_OFFSET = 0,
    ALL_SETTINGS_OFFSET = 394,
    ALL_SYSTEM_SETTINGS_OFFSET = 632,
};

/* Offsets in appc_system_all_status, unsigned bytes unless said otherwise. */
enum {
    STATUS_APP_CURRENT_MODE = 0,
    STATUS_APP_DIGITAL_ZOOM = 5,
    STATUS_APP_CAPTURE_DELAY_ACTIVE = 6,
    STATUS_APP_ACTIVE_VIDEO_PRESETS = 7,      /* 4 bytes */
    STATUS_APP_ACTIVE_PHOTO_PRESETS = 11,     /* 4 bytes */
    STATUS_APP_ACTIVE_TIMELAPSE_PRESETS = 15, /* 4 bytes */
    STATUS_APP_ACTIVE_PRESETS_GROUP = 19,     /* 4 bytes */
    STATUS_APP_SCHEDULED_PRESET = 27,         /* 4 bytes */
    STATUS_APP_SCHEDULED_HOUR = 31,
    STATUS_APP_SCHEDULED_MINUTE = 32,
    STATUS_APP_SCHEDULED_ENABLED = 33,
    STATUS_APP_SCHEDULED_FORMAT = 34,         /* signed */
    STATUS_VIDEO_VIDEO_PROGRESS_COUNTER = 35, /* 4 bytes */
    STATUS_VIDEO_VELLIX_DEFAULT = 39,         /* signed */
    STATUS_VIDEO_ZOOM_WHILE_ENCODING = 40,
    STATUS_VIDEO_EIS = 41,
    STATUS_VIDEO_VIDEO_RETROCAP_CAPTURE_ACTIVE = 43,
    STATUS_PHOTO_VELLIX_DEFAULT = 48,                 /* signed */
    STATUS_PHOTO_INTERVAL_CAPTURE_COUNT = 49,         /* 4 bytes */
    STATUS_MULTI_SHOT_MULTI_SHOT_COUNT_DOWN = 57,     /* 4 bytes */
    STATUS_MULTI_SHOT_VELLIX_DEFAULT = 61,            /* signed */
    STATUS_BROADCAST_BROADCAST_PROGRESS_COUNTER = 71, /* 4 bytes */
    STATUS_STREAM_ENABLE = 88,
    STATUS_STREAM_SUPPORTED = 89,
    STATUS_EXPOSURE_COORDINATES_DIRECT = 90, /* signed */
    STATUS_STORAGE_SD_STATUS = 97,
    STATUS_STORAGE_REMAINING_PHOTOS = 98,      /* 4 bytes */
    STATUS_STORAGE_REMAINING_VIDEO_TIME = 102, /* 4 bytes */
    STATUS_STORAGE_NUM_TOTAL_PHOTOS = 114,     /* 4 bytes */
    STATUS_STORAGE_NUM_TOTAL_VIDEOS = 118,     /* 4 bytes */
    STATUS_STORAGE_REMAINING_SPACE = 122,      /* 8 bytes */
    STATUS_STORAGE_NUM_KEYMARKS = 130,
    STATUS_STORAGE_LAST_KEYMARK_TIME_MSEC = 131,   /* 4 bytes */
    STATUS_STORAGE_REMAINING_TIMELAPSE_TIME = 135, /* 4 bytes */
    STATUS_STORAGE_TOTAL_SD_SPACE_KB = 148,        /* 8 bytes */
    STATUS_FWUPDATE_OTA_STATUS = 187,
    STATUS_FWUPDATE_DOWNLOAD_CANCEL_REQUEST_PENDING = 188,
    STATUS_SYSTEM_INTERNAL_BATTERY_PRESENT = 197,
    STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE = 198, /* signed */
    STATUS_SYSTEM_INTERNAL_BATTERY_CHARGE_STATE = 199,
    STATUS_SYSTEM_INTERNAL_BATTERY_BARS = 200,
    STATUS_SYSTEM_EXTERNAL_BATTERY_PRESENT = 201,
    STATUS_SYSTEM_EXTERNAL_BATTERY_CHARGE_STATE = 203,
    STATUS_SYSTEM_EXTERNAL_BATTERY_BARS = 204,
    STATUS_SYSTEM_SYSTEM_HOT = 208,
    STATUS_SYSTEM_SYSTEM_BUSY = 209,
    STATUS_SYSTEM_QUICK_CAPTURE_ACTIVE = 210,
    STATUS_SYSTEM_ENCODING_ACTIVE = 211, /* signed */
    STATUS_SYSTEM_LCD_LOCK_ACTIVE = 212,
    STATUS_SYSTEM_CAMERA_LOCATE_ACTIVE = 214,
    STATUS_SYSTEM_SYSTEM_READY = 225,
    STATUS_SYSTEM_GPS_STATUS = 238,
    STATUS_SYSTEM_ACC_MIC_STATUS = 240,
    STATUS_SYSTEM_DIGITAL_ZOOM_ACTIVE = 241,
    STATUS_SYSTEM_MOBILE_FRIENDLY_VIDEO = 242,
    STATUS_SYSTEM_BATT_OKAY_FOR_OTA = 244,
    STATUS_SYSTEM_VIDEO_LOW_TEMP_ALERT = 245,
    STATUS_SYSTEM_ACTUAL_ORIENTATION = 246, /* signed */
    STATUS_SYSTEM_RUSHLAPSE_SPEED_RAMP_ACTIVE = 248,
    STATUS_SYSTEM_SOUND_CAGE_STATUS = 249,
    STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS = 250, /* signed */
    STATUS_SYSTEM_LINUX_CORE_ACTIVE = 251,     /* signed */
    STATUS_SYSTEM_CAMERA_LENS_TYPE = 252,
    STATUS_SYSTEM_CREATING_PRESET = 253,
    STATUS_SYSTEM_CAMERA_CONTROL_STATUS = 254, /* signed */
    STATUS_SYSTEM_POWER_PROFILE = 255,
    STATUS_SYSTEM_ALLOW_CONTROL_OVER_USB = 256,
    STATUS_WIRELESS_ENABLE = 259,
    STATUS_WIRELESS_REMOTE_CONTROL_CONNECTED = 262,
    STATUS_WIRELESS_APP_COUNT = 263,
    STATUS_WIRELESS_STATE = 264,
    STATUS_WIRELESS_TYPE = 265,
    STATUS_WIRELESS_SCAN_STATE = 278,
    STATUS_WIRELESS_SCAN_TIME_MSEC = 279, /* 4 bytes */
    STATUS_WIRELESS_PROVISION_STATUS = 295,
    STATUS_WIRELESS_WIFI_BARS = 296, /* signed */
    STATUS_WIRELESS_WLAN_SSID = 297, /* text of 33 bytes */
    STATUS_WIRELESS_AP_SSID = 330,   /* text of 33 bytes */
    STATUS_WIRELESS_AP_STATE = 363,
    STATUS_WIRELESS_WIRELESS_BAND = 364,
    STATUS_WIRELESS_BAND_5GHZ_AVAIL = 365,
    STATUS_LIVEVIEW_EXPOSURE_SELECT_TYPE = 372,
    STATUS_LIVEVIEW_EXPOSURE_SELECT_X = 373, /* signed */
    STATUS_LIVEVIEW_EXPOSURE_SELECT_Y = 374, /* signed */
};

/* Offsets in appc_setup_all_settings, bytes unless said otherwise. */
enum {
    SETTINGS_SETUP_DEFAULT_CAMERA_MODE = 4, /* 4 bytes */
    SETTINGS_SETUP_BEEP_VOLUME = 10,
    SETTINGS_SETUP_AUTO_POWER_DOWN = 11,
    SETTINGS_SETUP_LED = 12,
    SETTINGS_SETUP_QUICK_CAPTURE = 13,
    SETTINGS_SETUP_ORIENTATION = 14,
    SETTINGS_SETUP_LCD_BRIGHTNESS = 15,
    SETTINGS_SETUP_LCD_SLEEP = 16,
    SETTINGS_SETUP_VIDEO_FORMAT = 19,
    SETTINGS_SETUP_LANGUAGE = 20,
    SETTINGS_SETUP_GPS = 21,
    SETTINGS_SETUP_VOICE_CONTROL_LANGUAGE = 22,
    SETTINGS_SETUP_LOCAL_VOICE_CONTROL = 23,
    SETTINGS_SETUP_CURRENT_FLAT_MODE = 25,
    SETTINGS_SETUP_ACC_MIC_MODE = 26,
    SETTINGS_SETUP_AUTO_SCREEN_LOCK = 27,
    SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE = 31,
    SETTINGS_SETUP_FRONT_LCD_SCREEN_SAVER = 32,
    SETTINGS_SETUP_LENS_DASHBOARD_BUTTON = 33,
    SETTINGS_SETUP_CAMERA_UX_MODE = 34,
    SETTINGS_SETUP_VIDEO_BIT_RATE = 36,
    SETTINGS_SETUP_VIDEO_BIT_DEPTH = 37,
    SETTINGS_VIDEO_RESOLUTION = 42,
    SETTINGS_VIDEO_FPS = 43,
    SETTINGS_VIDEO_FOV = 44,
    SETTINGS_VIDEO_LOOPING = 46,
    SETTINGS_VIDEO_TIMELAPSE_RATE = 49,
    SETTINGS_VIDEO_VELLIX = 50,
    SETTINGS_VIDEO_VELLIX_COLOR = 51,
    SETTINGS_VIDEO_VELLIX_SHARPNESS = 52,
    SETTINGS_VIDEO_VELLIX_ISO = 53,
    SETTINGS_VIDEO_VELLIX_EV = 54,
    SETTINGS_VIDEO_VELLIX_WHITE_BALANCE = 55,
    SETTINGS_VIDEO_EXPOSURE_TIME = 56,
    SETTINGS_VIDEO_EIS_SETTING = 58,
    SETTINGS_VIDEO_VELLIX_ISO_MIN = 60,
    SETTINGS_VIDEO_SHORT_CLIP_LENGTH = 61,
    SETTINGS_VIDEO_ASPECT_RATIO = 62,
    SETTINGS_VIDEO_RUSHLAPSE_SPEED = 64,
    SETTINGS_VIDEO_BITRATE = 68,
    SETTINGS_VIDEO_ONSCREEN_SHORTCUTS = 69, /* 4 slots, a byte each */
    SETTINGS_VIDEO_CAPTURE_DELAY = 79,
    SETTINGS_VIDEO_HORIZON_LOCK = 83,
    SETTINGS_VIDEO_MODE_BUTTON = 85,
    SETTINGS_VIDEO_RUSHLAPSE_SPEED_RAMP = 86,
    SETTINGS_VIDEO_RETROCAP_LENGTH = 87,
    SETTINGS_VIDEO_VELLIX_BITDEPTH = 89,
    SETTINGS_VIDEO_PROFILE = 90,
    SETTINGS_PHOTO_RESOLUTION = 96,
    SETTINGS_PHOTO_EXPOSURE_TIME = 99,
    SETTINGS_PHOTO_VELLIX = 100,
    SETTINGS_PHOTO_VELLIX_COLOR = 101,
    SETTINGS_PHOTO_VELLIX_SHARPNESS = 102,
    SETTINGS_PHOTO_VELLIX_ISO = 103,
    SETTINGS_PHOTO_VELLIX_EV = 104,
    SETTINGS_PHOTO_VELLIX_WHITE_BALANCE = 105,
    SETTINGS_PHOTO_VELLIX_ISO_MIN = 106,
    SETTINGS_PHOTO_VELLIX_EXPOSURE_TIME = 109,
    SETTINGS_PHOTO_CAPTURE_DELAY = 113,
    SETTINGS_PHOTO_OUTPUT = 115,
    SETTINGS_PHOTO_ONSCREEN_SHORTCUTS = 116, /* 4 slots, a byte each */
    SETTINGS_PHOTO_HORIZON_CONTROL = 120,
    SETTINGS_PHOTO_SINGLE_INTERVAL = 121,
    SETTINGS_PHOTO_INTERVAL_DURATION = 122,
    SETTINGS_MULTI_SHOT_RESOLUTION = 132,
    SETTINGS_MULTI_SHOT_BURST_RATE = 133,
    SETTINGS_MULTI_SHOT_TIMELAPSE_RATE = 134,
    SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE = 135,
    SETTINGS_MULTI_SHOT_EXPOSURE_TIME = 137,
    SETTINGS_MULTI_SHOT_VELLIX = 138,
    SETTINGS_MULTI_SHOT_VELLIX_COLOR = 139,
    SETTINGS_MULTI_SHOT_VELLIX_SHARPNESS = 140,
    SETTINGS_MULTI_SHOT_VELLIX_ISO = 141,
    SETTINGS_MULTI_SHOT_VELLIX_EV = 142,
    SETTINGS_MULTI_SHOT_VELLIX_WHITE_BALANCE = 143,
    SETTINGS_MULTI_SHOT_VELLIX_ISO_MIN = 144,
    SETTINGS_MULTI_SHOT_CAPTURE_DELAY = 151,
    SETTINGS_MULTI_SHOT_OUTPUT = 153,
    SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS = 154, /* 4 slots, a byte each */
    SETTINGS_MULTI_SHOT_ASPECT_RATIO = 161,
    SETTINGS_MULTI_SHOT_SHORT_CLIP_LENGTH = 162,
    SETTINGS_MULTI_SHOT_BITRATE = 163,
    SETTINGS_MULTI_SHOT_TRAIL_LENGTH = 164,
    SETTINGS_BROADCAST_RESOLUTION = 170,
    SETTINGS_BROADCAST_FPS = 171,
    SETTINGS_BROADCAST_FOV = 172,
    SETTINGS_BROADCAST_RECORD_RESOLUTION = 173,
    SETTINGS_BROADCAST_RECORD_FPS = 174,
    SETTINGS_BROADCAST_WINDOW_SIZE = 177,
    SETTINGS_STREAM_WINDOW_SIZE = 198,
    SETTINGS_STREAM_BIT_RATE = 207, /* 4 bytes */
    SETTINGS_AUDIO_WIND_OPTION = 228,
    SETTINGS_AUDIO_VELLIX_OPTION = 229,
    SETTINGS_AUDIO_SOUND_CAGE_AUDIO = 231,
};

#ifdef __cplusplus

/* ---- Status documents ---------------------------------------------------------------------------------------------
 * `status` is a complete record; that of an all_status_settings_t begins with one. `model` is the camera's model number
 * (zvc_state.h): both camera generations publish the same values. The functions append to the stream, whose formatting
 * state has no effect and stays as it is.
 */

/*
 * Writes `"status":{`, a line feed, the 82 published values as `"id":value` with commas between them in ascending order
 * of id, and `}`. The caller puts braces of its own around it. Values are numbers in decimal, but for two texts in
 * quotes, the network names 29 and 30, in which nothing is escaped. Returns 0.
 */
ZV_API int32_t camera_status_serialize_status_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                                      uint32_t model);

/*
 * Writes the values that have changed against `cache` as `"id":value` with commas between them, and nothing around
 * them. A value has changed when its text has. The cache then holds the new texts. Returns the number of values that
 * were written. `previous` is not read.
 *
 * The cache holds one text an id, empty for a value that was never seen: camera_status_init_bossCache makes one, for
 * which everything is a change. An id beyond the cache's end is logged and left out.
 */
ZV_API int32_t camera_status_serialize_status_changes_to_json(std::stringstream &stream,
                                                              const appc_system_all_status *status,
                                                              const appc_system_all_status *previous, uint32_t model,
                                                              std::vector<std::string> &cache);

/* Appends 119 empty texts to `cache`: an empty vector becomes a fresh cache. Returns 0. */
ZV_API int32_t camera_status_init_bossCache(uint32_t model, std::vector<std::string> &cache);

/*
 * Stores each published value at the index of its id, in a vector of at least 119 entries: the low 32 bits of the
 * number in the document, which is at most INT64_MAX, and 0 for a text. Free ids' entries are untouched, and an id
 * beyond the vector's end is left out.
 */
ZV_API void update_camera_status(const appc_system_all_status *status, uint32_t model, std::vector<uint32_t> &values);

/* ---- Output of one value ------------------------------------------------------------------------------------------
 * Each function appends one member `"id":value` with the id of `field`. `status` and `field` are valid pointers; a null
 * one is logged by status_field_output_int alone, which then writes nothing.
 */
struct status_field_t;
typedef void status_output_t(const appc_system_all_status *status, const struct status_field_t *field,
                             std::stringstream &stream);

typedef struct status_field_t {
    uint32_t id;
    const char *name; /* never written */
    int32_t offset;   /* in appc_system_all_status, 0 to 393 */
    int32_t size;     /* in bytes, for status_field_output_int: 1, 4 or 8 */
    status_output_t *output;
} status_field_t;

/*
 * The unsigned number of `size` bytes at `offset`. Another size, or a place that is not all inside the record, is
 * logged and gives 0.
 */
ZV_API status_output_t status_field_output_int;

/* The text at `offset`, up to its NUL or the record's end, without quotes. No text for an offset outside. */
ZV_API status_output_t status_field_output_string;

/* The battery's bars, 4 while it charges: the internal's for id 2, the external's for id 4, 0 for another. */
ZV_API status_output_t status_field_output_battery_level;

/* The value of the status with the id beside it, from its own place in the record or the system information service. */
ZV_API status_output_t status_field_output_wlan_ssid;                    /*  29: text in quotes */
ZV_API status_output_t status_field_output_ap_ssid;                      /*  30: text in quotes */
ZV_API status_output_t status_field_output_rssi_barsV2;                  /*  56: signed */
ZV_API status_output_t status_field_output_next_poll;                    /*  60: 500, in milliseconds */
ZV_API status_output_t status_field_output_analytics_ready;              /*  61: 0 while encoding, else 2 */
ZV_API status_output_t status_field_output_exposure_select_type;         /*  65: 0 to 3 */
ZV_API status_output_t status_field_output_exposure_select_x;            /*  66: 0 to 100 */
ZV_API status_output_t status_field_output_exposure_select_y;            /*  67: 0 to 100 */
ZV_API status_output_t status_field_output_internal_battery_percentage;  /*  70: last good percentage */
ZV_API status_output_t status_field_output_digital_zoom;                 /*  75 */
ZV_API status_output_t status_field_output_current_mode;                 /*  89: flat mode */
ZV_API status_output_t status_field_output_vellix_default;               /*  90: of the last flat mode that has one */
ZV_API status_output_t status_field_output_logs_ready;                   /*  91: 0 without the Linux core */
ZV_API status_output_t status_field_output_active_video_presets;         /*  93 */
ZV_API status_output_t status_field_output_active_photo_presets;         /*  94 */
ZV_API status_output_t status_field_output_active_timelapse_presets;     /*  95 */
ZV_API status_output_t status_field_output_active_presets_group;         /*  96: 1000 and the group */
ZV_API status_output_t status_field_output_active_preset;                /*  97: of the active group */
ZV_API status_output_t status_field_output_preset_modified;              /*  98 */
ZV_API status_output_t status_field_output_capture_delay;                /* 101 */
ZV_API status_output_t status_field_output_camera_lens_type;             /* 105 */
ZV_API status_output_t status_field_output_retrocap_active;              /* 106 */
ZV_API status_output_t status_field_output_scheduled_preset;             /* 107 */
ZV_API status_output_t status_field_output_scheduled_enabled;            /* 108 */
ZV_API status_output_t status_field_output_sd_rating_check_error;        /* 111 */
ZV_API status_output_t status_field_output_sd_write_speed_error;         /* 112 */
ZV_API status_output_t status_field_output_swift_offload;                /* 113 */
ZV_API status_output_t status_field_output_camera_control_status;        /* 114: signed byte, extended to 32 bits */
ZV_API status_output_t status_field_output_usb_connected;                /* 115 */
ZV_API status_output_t status_field_output_total_sd_space_kb;            /* 117 */
ZV_API status_output_t status_field_output_photo_interval_capture_count; /* 118 */

/* Two that are not in the document. */
ZV_API status_output_t status_field_output_analytics_size;    /* always 0 */
ZV_API status_output_t status_field_output_linux_core_active; /* an unsigned byte */

#endif

#ifdef __cplusplus
}
#endif

#endif
