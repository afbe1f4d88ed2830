#pragma once

namespace zdsg {

// Exit statuses of the tool: every file read; some file refused or the run failed; a usage error.
enum eExitStatus : int { eExitOk = 0, eExitRefused = 1, eExitUsage = 2 };

}  // namespace zdsg
