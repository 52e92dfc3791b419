// SPDX-License-Identifier: Apache-2.0

#include "tests/support/FakeNames.h"

#include <dlfcn.h>
#include <netdb.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <utility>

namespace platen::tests {

namespace {

struct Table {
  std::mutex mutex;
  std::condition_variable changed;
  std::map<std::string, std::vector<std::string>> names;
  std::set<std::string> blocked;
  std::size_t calls = 0;
  std::size_t waiting = 0;

  static Table& shared() {
    // Threads may ask for it to the very end.
    static auto* const table = new Table;
    return *table;
  }
};

int askSystem(const char* name, const char* service, const addrinfo* hints, addrinfo** list) {
  using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return function(name, service, hints, list);
}

/// One list of all addresses, made of one-element lists as the system makes them.
int answer(const std::vector<std::string>& addresses, addrinfo** list) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST;
  hints.ai_socktype = SOCK_STREAM;
  *list = nullptr;
  addrinfo** end = list;
  for (const auto& address : addresses) {
    if (const int status = askSystem(address.c_str(), nullptr, &hints, end); status != 0) {
      return status;
    }
    end = &(*end)->ai_next;
  }
  return *list == nullptr ? EAI_NONAME : 0;
}

int lookUp(const std::string& name, addrinfo** list) {
  auto& table = Table::shared();
  std::unique_lock lock(table.mutex);
  ++table.waiting;
  table.changed.notify_all();
  table.changed.wait(lock, [&] { return table.blocked.count(name) == 0; });
  --table.waiting;
  table.changed.notify_all();
  const auto addresses = table.names[name];
  lock.unlock();
  return answer(addresses, list);
}

}  // namespace

FakeNames::FakeNames() {
  auto& table = Table::shared();
  const std::lock_guard lock(table.mutex);
  table.names.clear();
  table.calls = 0;
}

FakeNames::~FakeNames() {
  auto& table = Table::shared();
  std::unique_lock lock(table.mutex);
  table.blocked.clear();
  table.changed.notify_all();
  table.changed.wait(lock, [&] { return table.waiting == 0; });
}

void FakeNames::set(const std::string& name, std::vector<std::string> addresses) {
  auto& table = Table::shared();
  const std::lock_guard lock(table.mutex);
  table.names[name] = std::move(addresses);
}

void FakeNames::block(const std::string& name) {
  auto& table = Table::shared();
  const std::lock_guard lock(table.mutex);
  table.blocked.insert(name);
}

void FakeNames::release(const std::string& name) {
  auto& table = Table::shared();
  const std::lock_guard lock(table.mutex);
  table.blocked.erase(name);
  table.changed.notify_all();
}

std::size_t FakeNames::callCount() const {
  auto& table = Table::shared();
  const std::lock_guard lock(table.mutex);
  return table.calls;
}

void FakeNames::waitUntilBlocked() const {
  auto& table = Table::shared();
  std::unique_lock lock(table.mutex);
  table.changed.wait(lock, [&] { return table.waiting > 0; });
}

}  // namespace platen::tests

/// Takes the place of the system's in the whole program, the libraries included.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name,
                                                                  const char* service,
                                                                  const addrinfo* hints,
                                                                  addrinfo** list) {
  auto& table = platen::tests::Table::shared();
  {
    const std::lock_guard lock(table.mutex);
    ++table.calls;
  }
  const std::string text(name == nullptr ? "" : name);
  return text.ends_with(".test") || text.ends_with(".test.")
             ? platen::tests::lookUp(text, list)
             : platen::tests::askSystem(name, service, hints, list);
}
