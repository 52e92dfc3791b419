// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Archives.h"

#include "platen/Error.h"

namespace platen::test {

Data archived(const IPPCodable& object, IPPArchiveFormat format) {
  return IPPKeyedArchiver::archivedDataWithRootObject(object, format).value();
}

std::string archivedText(const IPPCodable& object) {
  const Data data = archived(object);
  return {data.begin(), data.end()};
}

std::string refusal(const Data& archive, const IPPArchiveReading& reading) {
  std::shared_ptr<const Error> error;
  const auto object = IPPKeyedUnarchiver::unarchiveObjectWithData<>(archive, &error, reading);
  if (object != nullptr) {
    return error == nullptr ? "" : "an object and an error";
  }
  return error == nullptr ? "neither an object nor an error"
                          : std::to_string(error->code()) + " " +
                                std::string(error->localizedDescription().value_or("?"));
}

std::string refusal(std::string_view text, const IPPArchiveReading& reading) {
  return refusal(Data(text.begin(), text.end()), reading);
}

std::string archiveOf(std::string_view fields) {
  return R"({"$platen-archive":1,)" + std::string(fields) + "}";
}

}  // namespace platen::test
