#include "Question.h"

#include <iostream>

#include "DisplayText.h"
#include "Failure.h"
#include "System.h"

namespace Tool {

bool canAsk() {
    return inputIsTerminal() && errorIsTerminal();
}

std::string answerTo(const std::string& question) {
    std::cerr << displayable(question) << ' ' << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer;
}

void requireConsent(const std::string& question) {
    const std::string answer = answerTo(question + " [y/N]");
    if (answer != "y" && answer != "Y" && answer != "yes") throw Failure("nothing was deleted");
}

}  // namespace Tool
