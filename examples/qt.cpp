// SPDX-License-Identifier: Apache-2.0
//
// qt URI [FILE]: Platen in a Qt application.

#include <platen/adapters/Qt.h>

#include <QCoreApplication>

#include "Question.h"

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const platen::QtAdapter platen;
  const auto question = Question::ask(argc, argv, [] { QCoreApplication::quit(); });
  if (!question->isAnswered()) {
    QCoreApplication::exec();
  }
  return question->exitStatus();
}
