#include "app/state/DefaultsStore.h"

#include <fmt/format.h>

#include <cstdlib>

namespace tidewright {

namespace {

/// The bytes of a text that may not be UTF-8: only then it is held as bytes.
QVariant variantOf(const std::string& text) {
    const QByteArray bytes = QByteArray::fromStdString(text);
    const QString decoded = QString::fromUtf8(bytes);
    return decoded.toUtf8() == bytes ? QVariant(decoded) : QVariant(bytes);
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

void DefaultsStore::setArgument(const QString& key, QVariant value) {
    m_arguments.insert(key, std::move(value));
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
    return isNumber(found) ? found.toLongLong() : 0;
}

double DefaultsStore::number(const QString& key) const {
    const QVariant found = value(key);
    if (isText(found))
        return std::strtod(bytesOf(found).c_str(), nullptr);
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
    QVariantList list;
    for (const std::string& each : texts)
        list.append(variantOf(each));
    m_user->setValue(key, list);
}

bool DefaultsStore::isSet(const QString& key) const { return m_user->contains(key); }

Result<void, std::string> DefaultsStore::save() {
    m_user->sync();
    if (m_user->status() == QSettings::NoError)
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
