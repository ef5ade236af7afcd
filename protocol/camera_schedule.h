/*
 * camera_schedule.h - the scheduled capture, setting 168: a time of day and two flags in one number
 *
 *     bit 0        enabled
 *     bit 1        the clock's format; it does not change the hour
 *     bits 2 to 7  minute, 0 to 59
 *     bits 8 to 12 hour, 0 to 23
 *
 * The number is both the firmware's value and the public option id. 0 is no schedule. Nothing is checked here: a field
 * holds what its bits say, which may be no time of day.
 */
#ifndef ZVCTRL_CAMERA_SCHEDULE_H
#define ZVCTRL_CAMERA_SCHEDULE_H

#include <stdint.h>

typedef struct camera_schedule_t {
    uint8_t enabled; /* 0 or 1 */
    uint8_t format;  /* 0 or 1 */
    uint8_t minute;
    uint8_t hour;
} camera_schedule_t;

/* The fields of a number. Any thread may call. */
static inline camera_schedule_t camera_schedule_unpack(uint32_t number)
{
    camera_schedule_t schedule;
    schedule.enabled = (uint8_t)(number & 1U);
    schedule.format = (uint8_t)(number >> 1 & 1U);
    schedule.minute = (uint8_t)(number >> 2 & 0x3FU);
    schedule.hour = (uint8_t)(number >> 8 & 0x1FU);
    return schedule;
}

/* The number of these fields, each cut to its bits. Any thread may call. */
static inline uint32_t camera_schedule_pack(camera_schedule_t schedule)
{
    return (schedule.hour & 0x1FU) << 8 | (schedule.minute & 0x3FU) << 2 | (schedule.format & 1U) << 1 |
           (schedule.enabled & 1U);
}

#endif
