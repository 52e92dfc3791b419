// SPDX-License-Identifier: Apache-2.0
#include "KeyPathText.h"

#include <memory>
#include <ostream>
#include <string_view>

#include "Failure.h"
#include "ValueText.h"
#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "platen/KeyValue.h"

namespace platen::tool {

namespace {

std::string oneLine(const KeyValue& object);

std::string attributeText(const IPPAttribute& attribute) {
  const auto& value = attribute.ippValue();
  return value == nullptr ? "" : valueText(*value, attribute.name().value_or(""));
}

std::string namedText(std::string_view name, const std::string& text) {
  return harmless(name) + (text.empty() ? "" : " " + text);
}

std::string lineOfAttribute(const IPPAttribute& attribute) {
  return namedText(attribute.name().value_or(""), attributeText(attribute));
}

Lines linesOfValue(const IPPValue& value, std::string_view name) {
  const auto* set = dynamic_cast<const IPPArray*>(&value);
  if (set == nullptr) {
    return {valueText(value, name)};
  }
  Lines lines;
  for (std::size_t index = 0; index < set->size(); ++index) {
    lines.push_back(valueText(set->at(index), name));
  }
  return lines;
}

Lines linesOfAttribute(const IPPAttribute& attribute) {
  const auto& value = attribute.ippValue();
  return value == nullptr ? Lines{""} : linesOfValue(*value, attribute.name().value_or(""));
}

Lines linesOfGroup(const IPPAttributeGroup& group) {
  Lines lines;
  for (const auto& attribute : group.attributes()) {
    lines.push_back(lineOfAttribute(*attribute));
  }
  return lines;
}

// All that the operator leads to.
Lines linesOfForwarder(const IPPMessageKVCForwarder& forwarder) {
  Lines lines;
  for (const KeyValue& attribute : forwarder.valueForKey("*").asArray()) {
    lines.push_back(lineOfAttribute(*attribute.asAttribute()));
  }
  return lines;
}

Lines linesOfList(const KeyValue::Array& list) {
  Lines lines;
  for (const KeyValue& element : list) {
    lines.push_back(oneLine(element));
  }
  return lines;
}

Lines linesOfDictionary(const KeyValue::Dictionary& dictionary) {
  Lines lines;
  for (const auto& [name, object] : dictionary) {
    lines.push_back(namedText(name, oneLine(object)));
  }
  return lines;
}

Lines linesOf(const KeyValue& object) {
  if (const auto* list = object.ifArray()) {
    return linesOfList(*list);
  }
  if (const auto* dictionary = object.ifDictionary()) {
    return linesOfDictionary(*dictionary);
  }
  if (const auto group = object.ifGroup()) {
    return linesOfGroup(*group);
  }
  if (const auto forwarder = object.ifForwarder()) {
    return linesOfForwarder(*forwarder);
  }
  if (const auto attribute = object.ifAttribute()) {
    return linesOfAttribute(*attribute);
  }
  if (const auto value = object.ifValue()) {
    return linesOfValue(*value, "");
  }
  return {object.isNull() || object.isAbsent() ? "" : harmless(object.description())};
}

// Of what is several lines by itself, as it stands within a line.
std::string joined(const Lines& lines, std::string_view brackets) {
  std::string text(brackets.substr(0, 1));
  for (const std::string& line : lines) {
    text.append(text.size() > 1 ? ", " : "").append(line);
  }
  return text.append(brackets.substr(1));
}

std::string oneLine(const KeyValue& object) {
  if (const auto attribute = object.ifAttribute()) {
    return attributeText(*attribute);
  }
  if (const auto value = object.ifValue()) {
    return valueText(*value, "");
  }
  if (object.isArray()) {
    return joined(linesOf(object), "[]");
  }
  return object.isDictionary() || object.isGroup() ? joined(linesOf(object), "{}")
                                                   : linesOf(object).front();
}

Failure undefined(const UndefinedKeyException& exception, const std::string& path,
                  const std::string& source) {
  const std::string way = exception.key() == path ? "" : path + ": ";
  return {ExitStatus::failed, source + ": " + way + exception.what()};
}

}  // namespace

Lines linesAtKeyPath(const IPPMessage& message, const std::string& path,
                     const std::string& source) {
  try {
    const KeyValue result = message.valueForKeyPath(path);
    if (result.isAbsent()) {
      throw Failure(ExitStatus::failed, source + ": " + path + " leads to nothing");
    }
    return linesOf(result);
  } catch (const UndefinedKeyException& exception) {
    throw undefined(exception, path, source);
  }
}

void writeLines(const Lines& lines, std::ostream& out) {
  for (const std::string& line : lines) {
    out << line << '\n';
  }
}

}  // namespace platen::tool
