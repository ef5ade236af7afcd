/*
 * camera_status.h - the status documents made from a snapshot record
 *
 * A status is a number or text that the camera publishes under a fixed id, 0 to 118; some ids are free, and
 * camera_status_names.h has the names of the others. A front-end reads the record from the daemon (zvcontrol_if.h) and
 * gets JSON from it: all values, or those whose text has changed since it last looked.
 *
 * Nothing here waits for a peer; five values, and a sixth while the Linux core is active, are asked of the system
 * information service each time. Any thread may call, one thread per stream, cache or vector. For the whole process the
 * library remembers the last good battery percentage and the vellix default of the last flat mode that has one: they
 * are published again while the camera reports none.
 */
#ifndef ZVCTRL_CAMERA_STATUS_H
#define ZVCTRL_CAMERA_STATUS_H

#include "camera_records.h"
#include "camera_status_names.h"
#include "zvDbg.h"

#ifdef __cplusplus
#include <sstream>
#include <string>
#include <vector>

extern "C" {

/* ---- Status documents ---------------------------------------------------------------------------------------------
 * `status` is a complete record; that of an all_status_settings_t begins with one. `model` is the camera's model number
 * (zvc_state.h): both camera generations publish the same values. The functions append to the stream, whose formatting
 * state has no effect and stays as it is. Without memory they return ZV_ERR_OUTOFMEM and leave stream and cache as they
 * were. A stream that had failed before takes nothing.
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
 * them. A value has changed when its text has. The cache then holds the new texts, once they are in the stream. Returns
 * the number of values that were written, 0 for a stream that takes nothing: no change is lost. `previous` is not read.
 *
 * The cache holds one text per id, empty for a value that was never seen: camera_status_init_bossCache makes one, for
 * which everything is a change. An id beyond the cache's end is logged and left out.
 */
ZV_API int32_t camera_status_serialize_status_changes_to_json(std::stringstream &stream,
                                                              const appc_system_all_status *status,
                                                              const appc_system_all_status *previous, uint32_t model,
                                                              std::vector<std::string> &cache);

/* Appends 119 empty texts to `cache`: an empty vector becomes a fresh cache. Returns 0, or ZV_ERR_OUTOFMEM. */
ZV_API int32_t camera_status_init_bossCache(uint32_t model, std::vector<std::string> &cache);

/*
 * Stores each published value at the index of its id, in a vector of at least 119 entries: the low 32 bits of the
 * number in the document, which is at most INT64_MAX, and 0 for a text. Free ids' entries are untouched, and an id
 * beyond the vector's end is left out.
 */
ZV_API void update_camera_status(const appc_system_all_status *status, uint32_t model, std::vector<uint32_t> &values);

/* ---- Output of one value ------------------------------------------------------------------------------------------
 * Each function appends one member `"id":value` with the id of `field`; without memory the stream's badbit is set.
 * `status` and `field` are valid pointers; a null one is logged by status_field_output_int alone, which then writes
 * nothing.
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
}
#endif

#endif
