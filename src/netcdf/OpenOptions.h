#pragma once
// How NetCDFFile::s_Open reads a file, beyond the file and its NcML document. A default-constructed
// value reads every file exactly as the library always has; each member turns on one documented
// departure from that, so a caller names what it wants and later options can join without changing
// the signature again.

namespace ZorvoNetCDFDSG {

struct OpenOptions {
    // Time units of time coordinates are read by ParseIsoTimeUnits instead of ParseTimeUnits: ISO 8601
    // reference times ("since 2021-06-01T02:00:00Z", "+0530", "GMT") are read in full rather than cut
    // after the date or refused for their zone. Texts both readings accept completely mean the same.
    bool bIsoTimeUnits = false;
};

}  // namespace ZorvoNetCDFDSG
