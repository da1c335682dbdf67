// The grammar of the command line: which commands there are, what they take, and what that means in
// a few words. It runs nothing.
#pragma once

#include "cli/CleanCommand.h"
#include "cli/CommandState.h"
#include "cli/SettingsCommand.h"

namespace CLI {
class App;
} // namespace CLI

namespace tidewright {

/// What was typed. Only one command is run, so all share the values of their options.
struct Request {
    bool json = false;
    ScanOptions scan;
    std::string id; ///< to explain
    CleanOptions clean;
    std::vector<std::string> paths; ///< to check
    bool isProjectItem = false;     ///< whether they are judged as such
    SettingsRequest settings;
};

/// An option, or an argument without a name of its own.
struct OptionDescription {
    std::vector<std::string> names; ///< as they are typed; of an argument there are none
    std::string value;              ///< what the value stands for: "DIR"; empty where none is taken
    std::string text;
    bool isRequired = false;
    bool isRepeatable = false;
};

/// A command, or the program itself, whose commands are those of the second level.
struct CommandDescription {
    std::string name;
    std::string text;
    std::vector<OptionDescription> options;
    std::vector<OptionDescription> arguments;
    std::vector<CommandDescription> commands;
};

class Grammar {
public:
    Grammar();
    ~Grammar();
    Grammar(const Grammar&) = delete;
    Grammar& operator=(const Grammar&) = delete;

    /// Parses into the request; it throws what the library throws.
    CLI::App& app() { return *m_app; }
    const Request& request() const { return m_request; }

    CommandDescription description() const;

private:
    Request m_request;
    std::unique_ptr<CLI::App> m_app;
};

} // namespace tidewright
