// SPDX-License-Identifier: Apache-2.0
#include "tests/support/HeaderGetters.h"

#include <regex>

namespace platen::test {

namespace {

std::string withoutComments(const std::string& text) {
  return std::regex_replace(text, std::regex("//[^\n]*"), "");
}

// The body of a class from behind its "{" on, with a ";" for everything in braces: what is left is
// declarations that end in ";".
std::string flatBody(std::string_view text) {
  std::string body;
  int depth = 0;
  for (const char octet : text) {
    depth += octet == '{' ? 1 : octet == '}' ? -1 : 0;
    if (depth < 0) break;
    if (octet == '}') {
      body += ';';
    } else if (depth == 0) {
      body += octet;
    }
  }
  return body;
}

std::vector<std::string> namesIn(const std::string& baseList) {
  static const std::regex word("public\\s+(?:std::)?(\\w+)");
  std::vector<std::string> names;
  for (std::sregex_iterator found(baseList.begin(), baseList.end(), word), end; found != end;
       ++found) {
    names.push_back((*found)[1]);
  }
  return names;
}

// Takes the access labels off the front of a declaration; true when it stands under "public:".
bool takeLabels(std::string& declaration, bool isPublic) {
  static const std::regex label("^\\s*(public|protected|private)\\s*:(?!:)");
  std::smatch found;
  while (std::regex_search(declaration, found, label)) {
    isPublic = found[1] == "public";
    declaration = found.suffix();
  }
  return isPublic;
}

void addGetter(std::set<std::string>& getters, const std::string& declaration) {
  static const std::regex getter(
      "\\s*(\\[\\[nodiscard\\]\\]\\s+)?((?!\\s*(?:static|void|template|friend)\\b)[\\w:<>,&*\\s]+)"
      "[\\s&*]([a-zA-Z]\\w*)\\(\\)\\s*const(\\s+noexcept)?(\\s+override|\\s+final)*(\\s*=\\s*0)?"
      "\\s*");
  std::smatch found;
  if (std::regex_match(declaration, found, getter)) {
    getters.insert(found[3]);
  }
}

std::set<std::string> gettersIn(const std::string& body) {
  std::set<std::string> getters;
  bool isPublic = false;
  for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
    end = body.find(';', start);
    std::string declaration = body.substr(start, end - start);
    isPublic = takeLabels(declaration, isPublic);
    if (isPublic) {
      addGetter(getters, declaration);
    }
  }
  return getters;
}

}  // namespace

std::vector<DeclaredClass> declaredClasses(const std::string& header) {
  static const std::regex head("\nclass PLATEN_EXPORT (\\w+)(?: final)?\\s*(:[^{;]*)?\\{");
  const std::string text = withoutComments(header);
  std::vector<DeclaredClass> classes;
  for (std::sregex_iterator found(text.begin(), text.end(), head), end; found != end; ++found) {
    const auto behind = static_cast<std::size_t>(found->position() + found->length());
    classes.push_back({(*found)[1], namesIn((*found)[2]),
                       gettersIn(flatBody(std::string_view(text).substr(behind)))});
  }
  return classes;
}

}  // namespace platen::test
