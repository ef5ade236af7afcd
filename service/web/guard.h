// Who may ask for what.
#pragma once

#include "options.h"
#include "reply.h"
#include "request.h"

#include <optional>

namespace zvweb {

// The name of the cookie that the page keeps its token in.
inline constexpr char TOKEN_COOKIE[] = "zvweb_token";

// Why a request is not to be read on, or nothing: it says in two ways where it ends or whom it is for, so that another
// program on its way may have understood it otherwise; or it announces more than would be read. The connection ends
// with this answer.
std::optional<Answer> refuse_form(const Request &request);

// Why a request is not to be looked at, or nothing: its Host is none of ours (so that a foreign page can't reach us by
// a name of its own that it points here), it comes from a page that is not ours and would change something, or it lacks
// the token. `is_public`: the page itself, which asks for the token.
std::optional<Answer> refuse(const Options &options, const Request &request, bool is_public);

} // namespace zvweb
