// SPDX-License-Identifier: Apache-2.0
//
// print URI FILE: prints the file, and waits until the printer has taken it. The lines that
// README.md shows, and a test compares them: there with a printer and a file of its own.

#include <platen/platen.h>

#include <iostream>

int main(int argc, char** argv) {
  if (argc < 3 || !platen::URL::parse(argv[1])) return 2;
  const auto printer = platen::URL::parse(argv[1]);
  std::shared_ptr<const platen::Error> error;
  const auto document = platen::InputStream::withFileAtPath(argv[2]);
  const auto response =
      platen::IPPRequest::jobPrintRequest(*printer)->performOn(*printer, document, &error);
  std::cout << (response ? response->attributeValueForKey("job-id").description() : "no answer")
            << '\n';
  for (const auto& failure : {document->streamError(), error})
    if (failure) std::cerr << failure->description() << '\n';
}
