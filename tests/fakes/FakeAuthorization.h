#pragma once

#include "Authorization.h"

#include <cstring>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brisko::test {

/// An authorization whose answers the test sets, and which counts how often the user was asked.
class FakeAuthorization : public Authorization {
 public:
  int createStatus = 0;
  int promptStatus = 0;  ///< what the user's answer to the next prompts is
  int externalFormStatus = 0;
  int rebuildStatus = 0;
  int rightsAgainStatus = 0;  ///< without the pre-authorize flag
  int definitionStatus = 0;
  int executeStatus = 0;
  int freeStatus = 0;
  std::string output;
  std::function<void(const std::string& path)> tool;  ///< run by `execute` before it answers

  int prompts = 0;
  std::vector<unsigned> flags;      ///< of each request for rights
  std::vector<std::string> rights;  ///< asked for
  std::vector<std::vector<std::string>> commands;
  std::vector<std::optional<FileIdentity>> shown;
  std::set<Reference> open;  ///< handles that were not freed

  int create(Reference& reference) override {
    if (createStatus == 0) open.insert(reference = ++last_);
    return createStatus;
  }
  int copyRights(Reference, const std::string& right, unsigned with) override {
    rights.push_back(right);
    flags.push_back(with);
    if ((with & preAuthorize) == 0) return rightsAgainStatus;
    ++prompts;
    return promptStatus;
  }
  int makeExternalForm(Reference reference, ExternalForm& form) override {
    std::memcpy(form.data(), &reference, sizeof reference);
    return externalFormStatus;
  }
  int createFromExternalForm(const ExternalForm& form, Reference& reference) override {
    Reference original = 0;
    std::memcpy(&original, form.data(), sizeof original);
    if (rebuildStatus != 0) return rebuildStatus;
    if (open.count(original) == 0) return kInvalid;
    open.insert(reference = ++last_);
    return 0;
  }
  int rightDefinition(const std::string&) override { return definitionStatus; }
  int execute(Reference reference, const std::string& program,
              const std::vector<std::string>& arguments, const std::optional<FileIdentity>& item,
              Result& result) override {
    if (open.count(reference) == 0) return kInvalid;
    commands.push_back(arguments);
    commands.back().insert(commands.back().begin(), program);
    shown.push_back(item);
    if (tool) tool(arguments.back());
    result.output = output;
    return executeStatus;
  }
  int free(Reference reference) override {
    open.erase(reference);
    return freeStatus;
  }
  bool bless(Reference, const std::string&) override { return false; }

 private:
  Reference last_ = 0;
};

}  // namespace brisko::test
