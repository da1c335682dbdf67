#include "core/probes/Simctl.h"

#include "core/model/Coding.h"
#include "core/support/Text.h"

namespace tidewright::Simctl {

namespace {

using namespace std::chrono_literals;

constexpr Duration timeLimit = 30s;

/// What the tool wrote; empty when it did not succeed.
std::string ask(const ShellRunner& runner,
                const std::vector<std::string>& arguments,
                const CancelToken& cancel) {
    const auto result = runner.run("xcrun", arguments, std::nullopt, timeLimit, cancel);
    return result && result->succeeded() ? result->output : std::string();
}

enum class Container { object, list };

/// Picks records out of an answer while it is parsed, and keeps nothing else of it: an answer as
/// large as one likes takes the memory of its records.
template <Record T>
class RecordReader final : public ParsedJson::json_sax_t {
public:
    /// `containers` are those around the members of a record, the outermost first. Of the outermost
    /// object only the value under `onlyKey` is looked at, if there is one.
    RecordReader(std::vector<Container> containers, std::optional<std::string> onlyKey)
        : m_containers(std::move(containers)),
          m_onlyKey(std::move(onlyKey)) {}

    struct Found {
        std::string group; ///< the key in the second object around it
        T record;
    };
    std::vector<Found> found;

    bool null() override { return scalar(nullptr); }
    bool boolean(bool value) override { return scalar(value); }
    bool number_integer(number_integer_t value) override { return scalar(value); }
    bool number_unsigned(number_unsigned_t value) override { return scalar(value); }
    bool number_float(number_float_t value, const string_t&) override { return scalar(value); }
    bool string(string_t& value) override { return scalar(std::move(value)); }
    bool binary(binary_t&) override { return false; } // not in a text
    bool start_object(std::size_t) override { return open(Container::object); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(Container::list); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const ParsedJson::exception&) override {
        return false;
    }

    bool key(string_t& name) override {
        if (m_level == 1) {
            m_isWanted = !m_onlyKey || name == *m_onlyKey;
            if (m_isWanted && m_onlyKey)
                found.clear(); // of a key that comes again the last value counts
        }
        if (m_level == 2)
            m_group = name;
        if (m_level == m_containers.size())
            m_member = std::move(name);
        return true;
    }

private:
    /// Whether what comes now is of no interest: outside of the wanted key, or deep in a member.
    bool isPassedOver() const {
        return (m_level > 0 && !m_isWanted) || m_level > m_containers.size();
    }

    /// False, which ends the parsing, where something else than a record's container stands.
    bool scalar(ParsedJson value) {
        if (isPassedOver())
            return true;
        if (m_level < m_containers.size())
            return false;
        bool isField = false;
        forEachField(T(), [&](std::string_view name, const auto&) {
            isField = isField || (!name.empty() && name == m_member);
        });
        if (isField)
            m_record[m_member] = std::move(value);
        return true;
    }

    bool open(Container container) {
        bool goesOn = true;
        if (!isPassedOver() && m_level == m_containers.size())
            goesOn = scalar(ParsedJson::array()); // a member that is no scalar
        else if (!isPassedOver())
            goesOn = container == m_containers[m_level];
        if (!isPassedOver() && m_level + 1 == m_containers.size())
            m_record = ParsedJson::object();
        ++m_level;
        return goesOn;
    }

    bool close() {
        --m_level;
        if (m_level + 1 != m_containers.size() || (m_level > 0 && !m_isWanted))
            return true;
        auto record = decode<T>(m_record, commandLineStyle);
        if (record)
            found.push_back({m_group, std::move(*record)});
        return record.has_value();
    }

    std::vector<Container> m_containers;
    std::optional<std::string> m_onlyKey;
    std::size_t m_level = 0;
    bool m_isWanted = true; ///< what stands under the last key of the outermost object
    std::string m_group;
    std::string m_member;
    ParsedJson m_record;
};

/// Nothing if any one record does not decode.
template <Record T>
std::vector<typename RecordReader<T>::Found> recordsIn(std::string_view json,
                                                       RecordReader<T> reader) {
    // No JSON text has a NUL in it, and the parser would take it for the end.
    if (contains(json, std::string_view("\0", 1)) || !ParsedJson::sax_parse(json, &reader))
        return {};
    return std::move(reader.found);
}

} // namespace

std::vector<Device> devices(const ShellRunner& runner, const CancelToken& cancel) {
    return parseDevices(ask(runner, {"simctl", "list", "devices", "-j"}, cancel));
}

std::vector<Runtime> runtimes(const ShellRunner& runner, const CancelToken& cancel) {
    return parseRuntimes(ask(runner, {"simctl", "runtime", "list", "-j"}, cancel));
}

std::vector<Device> parseDevices(std::string_view json) {
    using enum Container;
    std::vector<Device> devices;
    for (auto& [runtime, device] :
         recordsIn(json, RecordReader<Device>({object, object, list, object}, "devices"))) {
        device.runtimeIdentifier = runtime;
        devices.push_back(std::move(device));
    }
    return devices;
}

std::vector<Runtime> parseRuntimes(std::string_view json) {
    using enum Container;
    std::vector<Runtime> runtimes;
    for (auto& [group, runtime] :
         recordsIn(json, RecordReader<Runtime>({object, object}, std::nullopt)))
        runtimes.push_back(std::move(runtime));
    return runtimes;
}

} // namespace tidewright::Simctl
