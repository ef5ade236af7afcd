// How a camera makes itself known to home automation, in the manner of Home Assistant: a document for each entity,
// below a prefix of its own. One device has them all.
#pragma once

#include "topics.h"

#include <string>
#include <vector>
#include <zvservice/snapshot.h>

namespace zvmqtt {

struct Document {
    std::string topic;
    std::string payload;
};

// Of every entity, each retained at its topic; which of them there are depends on the camera's model alone, and what
// they say on what it offers now. `prefix` is where the home automation looks, usually "homeassistant".
std::vector<Document> discovery_documents(const std::string &prefix, const Topics &topics,
                                          const zvservice::State &state);

// Where home automation tells "online" when it came up, and is then to be sent everything anew: PREFIX/status.
std::string birth_topic(const std::string &prefix);

} // namespace zvmqtt
