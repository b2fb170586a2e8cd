#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringDecoder>

namespace tables
{

/// Text as other programs write it: UTF-8 with or without its mark, UTF-16 with its mark ("Unicode text" of
/// spreadsheet programs), ISO-2022-JP where its escape sequences stand, else the system's Japanese code page.
/// Fails for what is none of them.
base::Result<QString> decodeText(const QByteArray &content);

/// The text of a whole file of at most \a highestSize bytes.
base::Result<QString> readTextFile(const QString &fileName, qint64 highestSize);

/// The same piece by piece, so that the size of a file costs no memory.
class TextFile
{
public:
    /// Opens a file of at most \a highestSize bytes, and finds out how its text is written.
    base::Status open(const QString &fileName, qint64 highestSize);

    /// Begins anew with the first piece.
    void rewind();

    /// Puts the next piece in place of \a piece. \return false after the last one, and when state() says why
    bool next(QString &piece);

    [[nodiscard]] const base::Status &state() const { return m_state; }

private:
    enum class Encoding { Unicode, CodePage, Iso2022Jp };

    bool decode(const QByteArray &bytes, QString &piece);
    base::Status findEncoding();
    /// Reads all of it. \return whether it is UTF-8; \a escaped: sequences of ISO-2022-JP are in it
    bool isUtf8(bool &escaped);

    QFile m_file;
    qsizetype m_mark = 0; // bytes before the text
    Encoding m_encoding = Encoding::Unicode;
    QStringDecoder::Encoding m_unicode = QStringDecoder::Utf8;
    QStringDecoder m_decoder;
    base::Status m_state;
};

} // namespace tables
