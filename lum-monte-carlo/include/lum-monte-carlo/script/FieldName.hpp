// Product data (dates, strikes, barriers) reaches scripts under field names; a name must be
// usable as a script variable and must not collide with a keyword of the language.
#pragma once

#include <string_view>

namespace zep {

// `kind` names the sort of field in the message ("date", "strike", ...).
void ValidateFieldName(std::string_view kind, std::string_view name);

}  // namespace zep
