#pragma once
// Failure texts: numbered records for gk_err_num_to_str, and the thread's last failure.

#include <string>

namespace ZorvoDSG::Host::gk_detail {

// Stores text under a new error number (kept for the last few hundred failures of the process).
int RecordError(std::string text);
// False when the number is unknown or too old; buffer then gets a generic text.
bool ErrorText(int errNum, std::string& buffer);

// Sets the calling thread's last-failure text, appending PROJ's pending log when there is one.
void SetLastError(std::string text);
// The calling thread's last-failure text; empty when none.
std::string const& LastError();

}  // namespace ZorvoDSG::Host::gk_detail
