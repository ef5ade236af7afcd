/*
 * camera_settings.h - the settings catalogue
 *
 * What settings the camera has, what options each has and which combinations are forbidden, and the way from the
 * firmware's values to the public option ids, one by one and as JSON. Nothing here talks to the camera: the functions
 * work on records that the caller got from the daemon, never block, and take the camera's model number
 * (zvc_state_get_model_number). Models 58 and 62 are the sable_knoll generation; every other number, known or not, is
 * the default generation, whose settings have no options and whose values pass through unchanged, but for two of the
 * on-screen shortcuts (getOptionIdByValue, getOptionValueById).
 *
 * A setting has one number, its id, 2 to 193; camera_setting_ids.h names it. It indexes every table here.
 *
 * The functions that hand out a map let std::bad_alloc pass. Nothing leaks then, and the same call works once there is
 * memory. The documents return ZV_ERR_OUTOFMEM. All others need none.
 */
#ifndef ZVCTRL_CAMERA_SETTINGS_H
#define ZVCTRL_CAMERA_SETTINGS_H

#include "camera_schedule.h"
#include "camera_setting_ids.h"
#include "camera_status.h"

#ifdef __cplusplus
#include <map>
#include <sstream>
#include <vector>

extern "C" {
#endif

/* ---- Setting tables ---------------------------------------------------------------------------------------------
 * One row for each id, also for an id without a setting, and the end row. The count is the same for both generations.
 */
enum {
    SETTINGS_ID_TABLE_COUNT = 195,
    SETTINGS_ALL_FIELDS_COUNT = 195,
    SETTINGS_ID_TABLE_SABLE_KNOLL_COUNT = 195,
    SETTINGS_ALL_FIELDS_SABLE_KNOLL_COUNT = 195,
};

/* How a row of the id table would be written; the arguments have no meaning yet. */
typedef int32_t (*settings_setter_t)(int32_t, int32_t, int32_t, void *, int32_t);

/* A setting's name and how a plain write of it reaches the firmware (camera_if_settings_set_value_int). */
typedef struct settings_id_entry_t {
    int32_t end_marker;       /* 0; -1 in the end row */
    const char *json_path;    /* the setting's name, such as "modes/video/settings/fps"; "" in an empty row */
    int32_t group_id;         /* remote API group of a plain write; -1 where there is none */
    int32_t action_id;        /* remote API action in that group; -1 where there is none */
    int32_t value_size;       /* payload bytes of a plain write: 1 or 4; 0 where there is none */
    settings_setter_t setter; /* settings_empty_setter */
    void *setter_data;        /* null */
} settings_id_entry_t;

/* Where a setting's value lies in appc_setup_all_settings. */
typedef struct settings_field_t {
    uint32_t id;    /* the row's index; 0 in an empty row; 0xFFFFFFFF in the end row */
    int32_t offset; /* of the value in the record; 0 where the value is worked out instead */
    uint32_t size;  /* bytes of the value in the record: 1 or 4; 0 in an empty row */
} settings_field_t;

/*
 * The id table of the model's generation, SETTINGS_ID_TABLE_COUNT rows, valid for the life of the process; the count
 * goes to `*count`. Null when `count` is null. Any thread may call.
 */
ZV_API const settings_id_entry_t *camera_settings_id_table(uint32_t model, uint32_t *count);

/* The setter of every row: ignores its arguments, prints its name and line on standard error and returns 0. */
ZV_API int32_t settings_empty_setter(int32_t, int32_t, int32_t, void *, int32_t);

/* ---- Option lookups ---------------------------------------------------------------------------------------------
 * An option has two numbers: its value is the firmware's, its id the public one, in JSON and in a client's request.
 * They mean something within one setting only.
 *
 * A process serves one camera. Each working copy is filled once, by the first call that passes a sable_knoll model;
 * every later call answers from it, whatever model it passes. Until then a copy is empty. The copies and the functions
 * that fill each, of which those that hand out no map only look up constant tables:
 *
 *     id to value           getOptionIds, optionIdExists, getOptionValueById
 *     value to id, default  getOptionIdByValue and the functions of the settings documents below
 *     preset edit           bypassPresetEditStart, whose first call fixes the answer with either generation
 *     and one copy each     getUIModeGroups, getCameraOptions, getCameraFilters
 *
 * Any thread may call. A map is filled under a guard; only one that was handed out empty, to a default model, must not
 * be read while another thread's call fills it. What a reference or pointer leads to lives as long as the process and
 * must not be changed. No lookup fails: each says what it answers to unknown input.
 */

/* The open interface's version: "2.0" for sable_knoll, else " ". */
ZV_API const char *getOpenZelvarVersion(uint32_t model);

/*
 * Whether writing `setting` needs no ZVCONTROL_PRESET_EDIT_START (zvcontrol_if.h) before it: a setting of the camera as
 * a whole. All others take part in preset editing.
 */
ZV_API bool bypassPresetEditStart(uint32_t setting, uint32_t model);

/*
 * Whether `value` is good for `setting` without being listed: 88 LCD brightness from 10 to 100, any of 91 LED, and any
 * of 168 scheduled capture (camera_schedule.h). True in both generations.
 */
ZV_API bool skipOptionCheck(uint32_t setting, uint32_t value);

/*
 * Which block of settings is in use in a flat mode, the camera's number for mode and sub mode. The documents sort two
 * modes otherwise: the settings that follow the block in use (114 to 118 among them) have none in 23, broadcast, except
 * for the shortcuts, which have the video block in 22, too. update_camera_settings has what a document says.
 */
ZV_API bool usesVideoSettings(uint32_t flat_mode);
ZV_API bool usesPhotoSettings(uint32_t flat_mode);
ZV_API bool usesMultiShotSettings(uint32_t flat_mode);

/*
 * Whether `id` is an option of `setting`, or needs no list; false for a setting that is not known. Of the default
 * generation nothing is known that needs a list. An option that exists may be unavailable now (getCameraFilters).
 */
ZV_API bool optionIdExists(uint32_t model, uint32_t setting, uint32_t id);

/*
 * The id that a firmware value reads as. A value that the setting does not list gives its default option's id, or
 * itself where skipOptionCheck says so; a setting without options gives the value, after an ERROR line. `flat_mode`
 * decides between the on-screen shortcuts (settings 129 to 132) that share a value, in either generation: 13 reads as
 * 109 in flat mode 15, and 6 as 111 in 12 and 16.
 */
ZV_API uint32_t getOptionIdByValue(uint32_t model, uint32_t setting, uint32_t value, uint32_t flat_mode);

/*
 * The firmware's value of an option, as camera_if_settings_set_value_int takes it; an unknown id or setting gives `id`
 * itself. The shortcuts' ids 109 and 111 give 13 and 6 in either generation.
 */
ZV_API uint32_t getOptionValueById(uint32_t model, uint32_t setting, uint32_t id);

#ifdef __cplusplus

/* One option of a setting. */
struct option_t {
    constexpr option_t(const char *option_key, const char *option_name, uint32_t option_value, uint32_t option_id)
        : key(option_key), name(option_name), value(option_value), id(option_id)
    {
    }

    const char *key;  /* stable name, unique within the setting, such as "4K_8BY7_V2" */
    const char *name; /* what a user sees, such as "4K"; not unique */
    uint32_t value;
    uint32_t id;
};

enum FilterInfoType {
    FILTER_INFO_STATUS = 0,  /* condition: a status value */
    FILTER_INFO_SETTING = 1, /* condition: the current option of a setting */
    FILTER_INFO_BLOCK = 2,   /* consequence: options of a setting that are not available */
};

/*
 * One element of a filter rule. A rule is a list of conditions and, after them, consequences; when every condition
 * holds, every consequence applies, and an option is unavailable as soon as one rule takes it away.
 *
 *     condition, include 1    holds when the current status value or option key is among `values`
 *     condition, include 0    holds when it is not
 *     consequence, include 1  takes away the options in `values`; without values, the whole setting
 *     consequence, include 0  takes away all options but those in `values`
 *
 * A status is compared as it is published (update_camera_status), which is not always what the record holds: 65 and 89
 * are worked out. The current option of a setting is the one of update_camera_settings; an id without an option, such
 * as a brightness, has no key and is among no `values`.
 */
struct filter_info_t {
    FilterInfoType type;
    uint32_t id; /* a status id for FILTER_INFO_STATUS, else a setting id */
    int32_t include;
    std::vector<const char *> values; /* option keys, or decimal numbers for a status */
};

#ifdef __clang__ /* C linkage names the symbols plainly; no C caller sees these */
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

/* The options of each setting in menu order: 89 settings and 602 options. */
ZV_API const std::map<uint32_t, std::vector<option_t *>> &getCameraOptions(uint32_t model);

/* The filter rules by number, 0 to 201. */
ZV_API const std::map<uint32_t, std::vector<filter_info_t *>> &getCameraFilters(uint32_t model);

/* For each setting the value of each of its option ids. */
ZV_API const std::map<uint32_t, std::map<uint32_t, uint32_t>> &getOptionIds(uint32_t model);

/* The names of the preset groups, by the numbers of status 96. */
ZV_API const std::map<uint32_t, const char *> &getUIModeGroups(uint32_t model);

#ifdef __clang__
#pragma clang diagnostic pop
#endif

/* ---- Settings documents -----------------------------------------------------------------------------------------
 * A setting's value is read for the flat mode that its own record holds and turned into an option id, as by
 * getOptionIdByValue. Settings come in ascending order: 89 for sable_knoll, 98 for the default generation. Text goes to
 * the stream's current position; nothing else of the stream is touched. Without memory for it the result is
 * ZV_ERR_OUTOFMEM, and the stream is as it was; a stream that had failed before takes nothing and changes no result. A
 * null record that must not be null leaves everything as it was, after a line on standard error. The records are only
 * read, and any thread may call.
 *
 * A camera of the default generation costs an ERROR line for each setting that is read, 98 for a document and 196 for
 * changes. Where the camera's counter is missing each line says so in two lines on standard output. A service that
 * serves such a camera lowers the level first: zvUtilSetLogLevel(ZV_LOG_FATAL).
 */

/*
 * Writes "settings":{"2":1,...,"193":0}, without braces around it. Returns 0, or -1 for null settings. A null status is
 * reported on standard error once for each setting, and every value then reads as 0. `system` is not read.
 */
ZV_API int32_t camera_settings_serialize_to_json(std::stringstream &stream, const appc_setup_all_settings *settings,
                                                 const appc_system_all_status *status,
                                                 const zvcontrol_system_settings *system, uint32_t model);

/*
 * Writes the settings whose option id differs, as members "2":1 with a comma between two. Returns their number, or -1
 * for a null `current`. `previous` must not be null.
 */
ZV_API int32_t camera_status_serialize_settings_changes_to_json(std::stringstream &stream,
                                                                const all_status_settings_t *current,
                                                                const all_status_settings_t *previous, uint32_t model);

/* Stores the option id of each setting at its id in `values`, which holds at least 194; other entries stay. */
ZV_API void update_camera_settings(const all_status_settings_t *record, uint32_t model, std::vector<uint32_t> &values);

#endif

#ifdef __cplusplus
}
#endif

#endif
