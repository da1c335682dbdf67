#include "app/state/DefaultsStore.h"

#include <QRegularExpression>
#include <fmt/format.h>

#include <cmath>
#include <cstdlib>

namespace tidewright {

namespace {

/// Texts that are not UTF-8 are held as bytes. As a list of texts alone it is written in a form
/// that people can read, whatever its length.
QVariant variantOf(const std::vector<std::string>& texts) {
    QStringList readable;
    QVariantList all;
    for (const std::string& text : texts) {
        const QByteArray bytes = QByteArray::fromStdString(text);
        const QString decoded = QString::fromUtf8(bytes);
        if (decoded.toUtf8() == bytes)
            readable.append(decoded);
        all.append(decoded.toUtf8() == bytes ? QVariant(decoded) : QVariant(bytes));
    }
    return readable.size() == all.size() ? QVariant(readable) : QVariant(all);
}

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
}

std::string bytesOf(const QVariant& text) {
    return text.typeId() == QMetaType::QByteArray ? text.toByteArray().toStdString()
                                                  : text.toString().toStdString();
}

bool isNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

/// Without regard to the user's language, unlike strtod.
double numberAtStart(const std::string& text) {
    static const QRegularExpression form(
        QStringLiteral("^\\s*([+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?)"));
    return form.match(QString::fromStdString(text)).captured(1).toDouble();
}

/// The nearest one towards 0; 0 for what is too large.
Int64 wholeNumber(double number) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    return std::abs(number) < limit ? static_cast<Int64>(number) : 0;
}

bool beginsAsTrue(const QString& text) {
    const QString word = text.trimmed();
    qsizetype start = 0;
    if (word.startsWith(u'+') || word.startsWith(u'-'))
        ++start;
    while (start < word.size() && word[start] == u'0')
        ++start;
    return start < word.size() && QStringLiteral("123456789YyTt").contains(word[start]);
}

bool isArgumentKey(const QString& argument) {
    return argument.size() > 1 && argument[0] == u'-' && argument[1].isLetter();
}

} // namespace

DefaultsStore::DefaultsStore(std::unique_ptr<QSettings> user, QVariantMap arguments)
    : m_user(std::move(user)),
      m_arguments(std::move(arguments)) {}

std::unique_ptr<QSettings> DefaultsStore::inFile(const URL& file) {
    return std::make_unique<QSettings>(QString::fromUtf8(file.path().c_str()),
                                       QSettings::IniFormat);
}

void DefaultsStore::registerDefaults(const QVariantMap& defaults) { m_registered.insert(defaults); }

void DefaultsStore::setArgument(const QString& key, const std::vector<std::string>& texts) {
    m_arguments.insert(key, variantOf(texts));
}

QVariant DefaultsStore::value(const QString& key) const {
    if (const auto argument = m_arguments.constFind(key); argument != m_arguments.constEnd())
        return *argument;
    return m_user->value(key, m_registered.value(key));
}

Int64 DefaultsStore::integer(const QString& key) const {
    const QVariant found = value(key);
    // As strtoll reads: the number at the beginning, and the nearest one where it is too large.
    if (isText(found))
        return std::strtoll(bytesOf(found).c_str(), nullptr, 10);
    if (found.typeId() == QMetaType::Double)
        return wholeNumber(found.toDouble());
    return isNumber(found) ? found.toLongLong() : 0;
}

double DefaultsStore::number(const QString& key) const {
    const QVariant found = value(key);
    if (isText(found))
        return numberAtStart(bytesOf(found));
    return isNumber(found) ? found.toDouble() : 0;
}

bool DefaultsStore::boolean(const QString& key) const {
    const QVariant found = value(key);
    if (isText(found))
        return beginsAsTrue(found.toString());
    return isNumber(found) && found.toDouble() != 0;
}

QString DefaultsStore::text(const QString& key) const {
    const QVariant found = value(key);
    return isText(found) || isNumber(found) ? found.toString() : QString();
}

std::vector<std::string> DefaultsStore::texts(const QString& key) const {
    const QVariant found = value(key);
    if (isText(found) && bytesOf(found).empty()) // "key=", as a hand empties a list
        return {};
    if (isText(found))
        return {bytesOf(found)};
    std::vector<std::string> texts;
    for (const QVariant& each : found.toList()) {
        if (!isText(each))
            return {};
        texts.push_back(bytesOf(each));
    }
    return texts;
}

void DefaultsStore::setInteger(const QString& key, Int64 value) {
    m_user->setValue(key, static_cast<qlonglong>(value));
}

void DefaultsStore::setNumber(const QString& key, double value) { m_user->setValue(key, value); }

void DefaultsStore::setBoolean(const QString& key, bool value) { m_user->setValue(key, value); }

void DefaultsStore::setTexts(const QString& key, const std::vector<std::string>& texts) {
    m_user->setValue(key, variantOf(texts));
}

bool DefaultsStore::isSet(const QString& key) const { return m_user->contains(key); }

QSettings::Status DefaultsStore::synchronized() {
    if (m_user->format() == QSettings::IniFormat) // takes over what is not written yet
        m_user = std::make_unique<QSettings>(m_user->fileName(), QSettings::IniFormat);
    m_user->sync();
    return m_user->status();
}

Result<void, std::string> DefaultsStore::save() {
    QSettings::Status status = synchronized();
    // What a hand has written comes first, and hides how the writing went; it is read only once.
    if (status == QSettings::FormatError)
        status = synchronized();
    if (status == QSettings::NoError)
        return {};
    return Failure(fmt::format("The settings could not be saved in {}. See that you may write "
                               "there and that the disk has room.",
                               m_user->fileName().toStdString()));
}

QVariantMap argumentDefaults(const QStringList& arguments) {
    QVariantMap defaults;
    for (qsizetype i = 0; i + 1 < arguments.size(); ++i)
        if (isArgumentKey(arguments[i]) && !isArgumentKey(arguments[i + 1])) {
            defaults.insert(arguments[i].mid(1), arguments[i + 1]);
            ++i;
        }
    return defaults;
}

} // namespace tidewright
