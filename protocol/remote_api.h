/*
 * remote_api.h - the firmware's remote API: groups and the shape of a request
 *
 * A request is a 5-byte header and a payload: 0, group, action, payload size (2, big-endian), payload. The answer is
 * the acknowledge byte (0 good), 3 bytes that are not read, the firmware's error as a signed byte (0 good), the payload
 * size (2, big-endian) and the payload. A camera that is switched off answers with one byte.
 */
#ifndef ZVCTRL_REMOTE_API_H
#define ZVCTRL_REMOTE_API_H

/* Groups of the remote API. */
enum {
    REMOTE_GROUP_APP = 1,
    REMOTE_GROUP_VIDEO = 2,
    REMOTE_GROUP_PHOTO = 3,
    REMOTE_GROUP_MULTISHOT = 4,
    REMOTE_GROUP_BROADCAST = 5,
    REMOTE_GROUP_WIRELESS = 6,
    REMOTE_GROUP_SETUP = 7,
    REMOTE_GROUP_SYSTEM = 8,
    REMOTE_GROUP_STORAGE = 9,
    REMOTE_GROUP_STREAM = 10,
    REMOTE_GROUP_FWUPDATE = 11,
    REMOTE_GROUP_AUDIO = 14,
    REMOTE_GROUP_PRESET = 17,
    REMOTE_GROUP_CAPABILITY = 18,
};

#define REMOTE_API_HEADER_SIZE 5

/* The one-byte answer of a camera that is switched off. */
#define ZVN_NACK_OFF 2

#endif
