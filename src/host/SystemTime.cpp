#include <zorvodsg/host/SystemTime.h>

#include <chrono>

namespace ZorvoDSG::Host {

bool SystemTimeToFileTime(const SYSTEMTIME& st, FILETIME& ft) {
    using namespace std::chrono;
    if (st.wYear < 1601 || st.wYear > 30827 || st.wHour >= 24 || st.wMinute >= 60 || st.wSecond >= 60 ||
        st.wMilliseconds >= 1000) {
        return false;
    }
    const year_month_day date{year{st.wYear}, month{st.wMonth}, day{st.wDay}};
    if (!date.ok()) {  // month 1-12 and a day that exists in that month
        return false;
    }
    constexpr year_month_day epoch{year{1601}, January, day{1}};
    const auto days = static_cast<uint64_t>((sys_days{date} - sys_days{epoch}).count());
    const uint64_t seconds = days * 86400u + st.wHour * 3600u + st.wMinute * 60u + st.wSecond;
    const uint64_t ticks = (seconds * 1000u + st.wMilliseconds) * 10000u;
    ft = UInt64ToFileTime(ticks);
    return true;
}

}  // namespace ZorvoDSG::Host
