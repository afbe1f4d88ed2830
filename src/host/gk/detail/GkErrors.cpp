#include <zorvodsg/host/gk/detail/GkErrors.h>

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>

#include <zorvodsg/host/gk/detail/ProjContext.h>

namespace ZorvoDSG::Host::gk_detail {

namespace {

constexpr int kFirstNumber = 1000;
constexpr std::size_t kKept = 256;

struct Record {
    int number = 0;
    std::string text;
};

struct Registry {
    std::mutex mutex;
    int next = kFirstNumber;
    std::array<Record, kKept> records;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

thread_local std::string t_lastError;

}  // namespace

int RecordError(std::string text) {
    Registry& registry = TheRegistry();
    std::lock_guard lock(registry.mutex);
    int const number = registry.next;
    registry.next = number == std::numeric_limits<int>::max() ? kFirstNumber : number + 1;
    Record& record = registry.records[static_cast<std::size_t>(number) % kKept];
    record.number = number;
    record.text = std::move(text);
    return number;
}

bool ErrorText(int errNum, std::string& buffer) {
    if (errNum == 0) {
        buffer = "no error";
        return true;
    }
    if (errNum >= kFirstNumber) {
        Registry& registry = TheRegistry();
        std::lock_guard lock(registry.mutex);
        Record const& record = registry.records[static_cast<std::size_t>(errNum) % kKept];
        if (record.number == errNum) {
            buffer = record.text;
            return true;
        }
    }
    buffer = "coordinate system error " + std::to_string(errNum);
    return false;
}

void SetLastError(std::string text) {
    std::string const log = ProjContext::Current()->TakeLog();
    if (!log.empty()) {
        text += ": ";
        text += log;
    }
    t_lastError = std::move(text);
}

std::string const& LastError() {
    return t_lastError;
}

}  // namespace ZorvoDSG::Host::gk_detail
