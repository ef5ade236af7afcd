// What programs publish of a camera, as JSON: the words that its front-ends share.
//
// Every text here is valid JSON, also where a name holds quotes or bytes that are no UTF-8, which become U+FFFD.
// Numbers and members are those of the library's documents. Any thread may call; std::bad_alloc passes.
#pragma once

#include "availability.h"
#include "catalogue.h"
#include "snapshot.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zvservice {

// {"1":1,"2":3,...}: the members of the status document, or of the settings document.
ZV_API std::string status_json(const State &state);
ZV_API std::string settings_json(const State &state);

// {"model":62,"model_name":TEXT,"serial_number":TEXT,"firmware":TEXT,"link":"up","switched_off":false,"epoch":TEXT,
// "revision":17}: what the system information service says of the camera, which needs no answer of it, and the link. A
// text that is not known is empty, a model 0.
ZV_API std::string camera_json(const Snapshot &snapshot);

// [{"rule":89,"because":[{"setting":2,"option":"4K"},{"status":65,"value":1}]},...]: each rule with the conditions that
// are met: the present option's key (its id as text where the setting does not list it), or the published value.
ZV_API std::string why_json(const std::vector<Removal> &reasons);

// {"id":5,"key":"60","name":"60"}. For an id that is not listed the key is the id as text.
ZV_API std::string option_json(const Catalogue &catalogue, uint32_t setting, uint32_t id);

// "option":{"id":5,...}, or "value":1234 for a setting without options: the member that tells what a setting is set to.
ZV_API std::string option_member_json(const Catalogue &catalogue, uint32_t setting, uint32_t id);

// {"setting":3,"name":"video/fps","option":{...},"default":{...},"available":true,"why":[],"options":[{"id":0,
// "key":"240","name":"240","available":false,"why":[...]},...]}, options in menu order. "value" is in place of "option"
// for a setting without options, and "default" is left out where there is none. A setting is available where one of its
// options is; its "why" is then empty, and else has the rules that leave none. `setting` is one that the model has.
ZV_API std::string setting_json(const State &state, uint32_t setting);

// {"settings":[{"setting":3,"name":TEXT,"default":{...},"options":[{"id":..,"key":..,"name":..},...]},...]}, ascending.
ZV_API std::string catalogue_json(uint32_t model);

// {"3":{"available":true,"why":[],"options":[5,8],"unavailable":[{"id":0,"why":[...]}]},...}: every setting of the
// model, ascending; ids in menu order.
ZV_API std::string available_json(const State &state);

} // namespace zvservice
