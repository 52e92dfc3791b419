// SPDX-License-Identifier: Apache-2.0
#include "EnumNames.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <span>

#include "OperationNames.h"
#include "platen/IPPRequest.h"

namespace platen::tool {

namespace {

struct EnumName {
  std::int32_t value;
  std::string_view name;
};

using EnumNames = std::span<const EnumName>;

// RFC 8011 §5.4.11.
constexpr EnumName kPrinterStates[] = {{3, "idle"}, {4, "processing"}, {5, "stopped"}};

// RFC 8011 §5.3.7.
constexpr EnumName kJobStates[] = {
    {3, "pending"},  {4, "pending-held"}, {5, "processing"}, {6, "processing-stopped"},
    {7, "canceled"}, {8, "aborted"},      {9, "completed"}};

// RFC 8011 §5.2.10 and PWG 5100.13 (none).
constexpr EnumName kOrientations[] = {{3, "portrait"},
                                      {4, "landscape"},
                                      {5, "reverse-landscape"},
                                      {6, "reverse-portrait"},
                                      {7, "none"}};

// RFC 8011 §5.2.13.
constexpr EnumName kQualities[] = {{3, "draft"}, {4, "normal"}, {5, "high"}};

// RFC 3381 §7.
constexpr EnumName kCollations[] = {{1, "other"},
                                    {2, "unknown"},
                                    {3, "uncollated-sheets"},
                                    {4, "collated-documents"},
                                    {5, "uncollated-documents"}};

// RFC 8011 §5.2.6 and PWG 5100.1.
constexpr EnumName kFinishings[] = {{3, "none"},
                                    {4, "staple"},
                                    {5, "punch"},
                                    {6, "cover"},
                                    {7, "bind"},
                                    {8, "saddle-stitch"},
                                    {9, "edge-stitch"},
                                    {10, "fold"},
                                    {11, "trim"},
                                    {12, "bale"},
                                    {13, "booklet-maker"},
                                    {14, "jog-offset"},
                                    {15, "coat"},
                                    {16, "laminate"},
                                    {20, "staple-top-left"},
                                    {21, "staple-bottom-left"},
                                    {22, "staple-top-right"},
                                    {23, "staple-bottom-right"},
                                    {24, "edge-stitch-left"},
                                    {25, "edge-stitch-top"},
                                    {26, "edge-stitch-right"},
                                    {27, "edge-stitch-bottom"},
                                    {28, "staple-dual-left"},
                                    {29, "staple-dual-top"},
                                    {30, "staple-dual-right"},
                                    {31, "staple-dual-bottom"},
                                    {32, "staple-triple-left"},
                                    {33, "staple-triple-top"},
                                    {34, "staple-triple-right"},
                                    {35, "staple-triple-bottom"},
                                    {50, "bind-left"},
                                    {51, "bind-top"},
                                    {52, "bind-right"},
                                    {53, "bind-bottom"},
                                    {60, "trim-after-pages"},
                                    {61, "trim-after-documents"},
                                    {62, "trim-after-copies"},
                                    {63, "trim-after-job"},
                                    {70, "punch-top-left"},
                                    {71, "punch-bottom-left"},
                                    {72, "punch-top-right"},
                                    {73, "punch-bottom-right"},
                                    {74, "punch-dual-left"},
                                    {75, "punch-dual-top"},
                                    {76, "punch-dual-right"},
                                    {77, "punch-dual-bottom"},
                                    {78, "punch-triple-left"},
                                    {79, "punch-triple-top"},
                                    {80, "punch-triple-right"},
                                    {81, "punch-triple-bottom"},
                                    {82, "punch-quad-left"},
                                    {83, "punch-quad-top"},
                                    {84, "punch-quad-right"},
                                    {85, "punch-quad-bottom"},
                                    {86, "punch-multiple-left"},
                                    {87, "punch-multiple-top"},
                                    {88, "punch-multiple-right"},
                                    {89, "punch-multiple-bottom"},
                                    {90, "fold-accordion"},
                                    {91, "fold-double-gate"},
                                    {92, "fold-gate"},
                                    {93, "fold-half"},
                                    {94, "fold-half-z"},
                                    {95, "fold-left-gate"},
                                    {96, "fold-letter"},
                                    {97, "fold-parallel"},
                                    {98, "fold-poster"},
                                    {99, "fold-right-gate"},
                                    {100, "fold-z"},
                                    {101, "fold-engineering-z"}};

// PWG 5100.15.
constexpr EnumName kTransmissions[] = {{3, "pending"},  {4, "pending-retry"}, {5, "processing"},
                                       {7, "canceled"}, {8, "aborted"},       {9, "completed"}};

// The bits of "printer-type" of the CUPS print server.
constexpr EnumName kPrinterTypeBits[] = {
    {0x1, "class"},         {0x2, "remote"},           {0x4, "black-and-white"},
    {0x8, "color"},         {0x10, "duplex"},          {0x20, "staple"},
    {0x40, "copies"},       {0x80, "collate"},         {0x100, "punch"},
    {0x200, "cover"},       {0x400, "bind"},           {0x800, "sort"},
    {0x1000, "small"},      {0x2000, "medium"},        {0x4000, "large"},
    {0x8000, "variable"},   {0x20000, "default"},      {0x40000, "fax"},
    {0x80000, "rejecting"}, {0x200000, "not-shared"},  {0x400000, "authenticated"},
    {0x800000, "commands"}, {0x1000000, "discovered"}, {0x2000000, "scanner"},
    {0x4000000, "mfp"},     {0x8000000, "3d"}};

struct EnumAttribute {
  std::string_view attribute;
  EnumNames names;
};

constexpr EnumAttribute kEnumAttributes[] = {{"document-state", kJobStates},
                                             {"finishings", kFinishings},
                                             {"input-orientation-requested", kOrientations},
                                             {"input-quality", kQualities},
                                             {"job-collation-type", kCollations},
                                             {"job-state", kJobStates},
                                             {"notify-job-state", kJobStates},
                                             {"notify-printer-state", kPrinterStates},
                                             {"orientation-requested", kOrientations},
                                             {"print-quality", kQualities},
                                             {"printer-state", kPrinterStates},
                                             {"system-state", kPrinterStates},
                                             {"transmission-status", kTransmissions}};

std::string_view withoutSuffix(std::string_view attribute) {
  for (const std::string_view suffix : {"-default", "-supported", "-ready", "-actual"}) {
    if (attribute.ends_with(suffix)) {
      return attribute.substr(0, attribute.size() - suffix.size());
    }
  }
  return attribute;
}

EnumNames namesOf(std::string_view attribute) {
  const auto* found = std::find_if(std::begin(kEnumAttributes), std::end(kEnumAttributes),
                                   [&](const auto& entry) { return entry.attribute == attribute; });
  return found == std::end(kEnumAttributes) ? EnumNames() : found->names;
}

std::string bitsText(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "0x%x", bits);
  std::string text(number.data());
  for (const auto& [bit, name] : kPrinterTypeBits) {
    if ((bits & static_cast<std::uint32_t>(bit)) != 0) {
      text.append(text.ends_with(',') ? " " : ": ").append(name).append(",");
    }
  }
  if (text.ends_with(',')) {
    text.pop_back();
  }
  return text;
}

}  // namespace

std::string hexText(std::int32_t code) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%04X", static_cast<unsigned>(code) & 0xFFFFU);
  return text.data();
}

std::string operationText(std::int32_t operationId) {
  const auto& known = IPPRequest::operationIdToNameSpec();
  if (const auto found = known.find(operationId); found != known.end()) {
    return std::string(found->second);
  }
  const std::string_view registered = registeredOperationName(operationId);
  return registered.empty() ? hexText(operationId) : std::string(registered);
}

std::string enumText(std::string_view attribute, std::int32_t value) {
  if (attribute == "operations-supported") {
    return operationText(value);
  }
  if (attribute == "printer-type" || attribute == "printer-type-mask") {
    return bitsText(value);
  }
  const EnumNames names = namesOf(withoutSuffix(attribute));
  const auto found = std::find_if(names.begin(), names.end(),
                                  [value](const EnumName& entry) { return entry.value == value; });
  return found == names.end() ? std::to_string(value) : std::string(found->name);
}

}  // namespace platen::tool
