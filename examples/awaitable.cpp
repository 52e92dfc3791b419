// SPDX-License-Identifier: Apache-2.0
//
// awaitable URI [FILE]: one coroutine asks a printer what it is, and prints the file on it.

#include <platen/Awaitable.h>
#include <platen/RunLoop.h>

#include <iostream>
#include <utility>

/// A coroutine that begins at once, and is destroyed with this object. Applications have one of
/// these already, from the library of coroutines that they use.
struct Task {
  // NOLINTBEGIN(readability-identifier-naming): names that the language looks for
  struct promise_type {
    Task get_return_object() { return Task(Handle::from_promise(*this)); }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    void return_value(int value) { result = value; }
    void unhandled_exception() { throw; }
    int result = 0;
  };
  // NOLINTEND(readability-identifier-naming)
  using Handle = std::coroutine_handle<promise_type>;

  explicit Task(Handle coroutine) : handle(coroutine) {}
  Task(Task&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
  Task& operator=(Task&&) = delete;
  ~Task() {
    if (handle) handle.destroy();
  }

  Handle handle;
};

Task inquire(platen::URL printer, const char* path) {
  const auto question = platen::IPPRequest::printerAttributesRequest(printer);
  auto [answer, error] = co_await platen::perform(question, printer);
  if (!error) {
    for (const auto* key : {"printer-name", "printer-state"}) {
      std::cout << key << ": " << answer->attributeValueForKey(key).description() << '\n';
    }
  }
  if (!error && path != nullptr) {
    const auto job = platen::IPPRequest::jobPrintRequest(printer);
    const auto document = platen::InputStream::withFileAtPath(path);
    const auto printed = co_await platen::perform(job, printer, document);
    error = printed.error;
    if (!error) {
      std::cout << "job-id: " << printed.response->attributeValueForKey("job-id").description()
                << '\n';
    }
  }
  if (error) {
    std::cerr << error->description() << '\n';
  }
  co_return error ? 1 : 0;
}

int main(int argc, char** argv) {
  const auto printer = argc > 1 ? platen::URL::parse(argv[1]) : std::nullopt;
  if (!printer) {
    std::cerr << "usage: awaitable URI [FILE]\n";
    return 2;
  }
  // With one of the adapters, the application's own loop would run instead.
  const auto task = inquire(*printer, argc > 2 ? argv[2] : nullptr);
  while (!task.handle.done()) {
    platen::RunLoop::current()->runOnce(std::chrono::seconds(1));
  }
  return task.handle.promise().result;
}
