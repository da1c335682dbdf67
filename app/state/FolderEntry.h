// The path of a folder as a user types it, with what could follow.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

#include <QObject>
#include <QStringList>

namespace tidewright {

/// Main thread only. Reads the folder that is being typed in.
class FolderEntry : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QStringList suggestions READ suggestions NOTIFY textChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY textChanged)
    Q_PROPERTY(bool isFolder READ isFolder NOTIFY textChanged)

public:
    explicit FolderEntry(URL home, QObject* parent = nullptr);

    /// "~" stands for the home folder.
    const QString& text() const { return m_text; }
    void setText(const QString& text);
    /// Begins with the home folder.
    void restart();

    /// The texts of the first few folders whose paths begin so, in the order that people expect;
    /// hidden ones only after a dot.
    const QStringList& suggestions() const { return m_suggestions; }
    /// Why it names no folder, as a sentence; empty where it does, or one could still follow.
    QString problem() const;
    bool isFolder() const { return folder().has_value(); }
    /// The error is the problem.
    Result<URL, QString> folder() const;

Q_SIGNALS:
    void textChanged();

private:
    /// Of all folders whose paths begin so.
    QStringList namesFollowing() const;

    URL m_home;
    QString m_text;
    QStringList m_names;
    QStringList m_suggestions;
};

} // namespace tidewright
