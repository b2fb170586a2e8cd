#pragma once

#include <QByteArray>
#include <QRandomGenerator>

#include <algorithm>

/// Damages files of pages of 4096 bytes, as the old engine's and ours are, in one of many ways.
class Damage
{
public:
    explicit Damage(quint32 seed)
        : m_random(seed)
    {}

    QByteArray to(QByteArray file)
    {
        if (file.size() < pageSize)
            return file;
        switch (below(10)) {
        case 0:
            return file.first(below(file.size()));
        case 1:
            return file.first(below(file.size() / pageSize) * pageSize);
        case 2:
            return overwrite(file, page(file), pageSize, [](qsizetype) { return '\0'; });
        case 3:
            return file.replace(page(file), pageSize, QByteArray(file.mid(page(file), pageSize)));
        case 4: // a structure's numbers stand at the beginning of its page
            return overwrite(file, page(file) + below(128), 4, [](qsizetype) { return '\xff'; });
        case 5:
            return overwrite(file, page(file) + below(256), 1 + below(16),
                             [this](qsizetype) { return byte(); });
        case 6: // two pages trade places
        {
            const qsizetype one = page(file);
            const qsizetype other = page(file);
            const QByteArray kept = file.mid(one, pageSize);
            file.replace(one, pageSize, file.mid(other, pageSize));
            return file.replace(other, pageSize, kept);
        }
        case 7: // the header of the file
            return overwrite(file, below(100), 1 + below(4), [this](qsizetype) { return byte(); });
        default:
            for (qsizetype flips = 1 + below(64); flips > 0; --flips) {
                const qsizetype at = below(2) ? below(file.size()) : page(file) + below(512);
                file[at] = static_cast<char>(file.at(at) ^ (1 << below(8)));
            }
            return file;
        }
    }

    qsizetype below(qsizetype bound) { return m_random.bounded(static_cast<quint32>(bound)); }

private:
    static constexpr qsizetype pageSize = 4096;

    qsizetype page(const QByteArray &file) { return below(file.size() / pageSize) * pageSize; }
    char byte() { return static_cast<char>(below(256)); }

    template <class Byte>
    QByteArray overwrite(QByteArray file, qsizetype from, qsizetype size, Byte byte)
    {
        for (qsizetype i = from; i < std::min(from + size, file.size()); ++i)
            file[i] = byte(i);
        return file;
    }

    QRandomGenerator m_random;
};
