#include "printing/queue/queue_words.h"

#include <QRegularExpression>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

QString binInWords(const QString &bin)
{
    // The names of PWG 5101.1, "media-source".
    static const std::array<std::pair<QString, QString>, 14> names{{
        {u"auto"_s, u"自動"_s},
        {u"main"_s, u"標準トレイ"_s},
        {u"top"_s, u"上段トレイ"_s},
        {u"upper"_s, u"上段トレイ"_s},
        {u"middle"_s, u"中段トレイ"_s},
        {u"bottom"_s, u"下段トレイ"_s},
        {u"lower"_s, u"下段トレイ"_s},
        {u"manual"_s, u"手差し"_s},
        {u"by-pass-tray"_s, u"手差しトレイ"_s},
        {u"envelope"_s, u"封筒フィーダ"_s},
        {u"large-capacity"_s, u"大容量トレイ"_s},
        {u"photo"_s, u"写真トレイ"_s},
        {u"main-roll"_s, u"ロール紙"_s},
        {u"tractor"_s, u"トラクタフィーダ"_s},
    }};
    for (const auto &[name, words] : names) {
        if (bin == name)
            return words;
    }
    static const QRegularExpression numbered(u"^tray-(\\d{1,3})$"_s);
    const auto match = numbered.match(bin);
    return match.hasMatch() ? u"トレイ "_s + match.captured(1) : bin;
}

QString paperInWords(const QSizeF &paper)
{
    struct Named
    {
        const char16_t *name;
        QSizeF size;
    };
    static const std::array<Named, 5> papers{{{u"A4", {210, 297}},
                                              {u"A5", {148, 210}},
                                              {u"B5", {182, 257}},
                                              {u"B4", {257, 364}},
                                              {u"はがき", {100, 148}}}};
    for (const Named &each : papers) {
        if (std::abs(each.size.width() - paper.width()) < 0.5 &&
            std::abs(each.size.height() - paper.height()) < 0.5)
            return QString::fromUtf16(each.name);
    }
    return u"幅 %1 × 長さ %2 mm"_s.arg(paper.width()).arg(paper.height());
}

QString paperObstacle(const QueueAbilities &abilities, const QString &queue, const QSizeF &paper)
{
    if (takesPaper(abilities, paper))
        return {};
    return u"プリンタ「%1」は、%2の用紙を受け付けません。この用紙を使えるプリンタを選ぶか、"
           "プリンタの設定で用紙を加えてください。"_s.arg(queue, paperInWords(paper));
}

QString stateInWords(JobState state)
{
    switch (state) {
    case JobState::Waiting:
        return u"順番待ち"_s;
    case JobState::Held:
        return u"保留"_s;
    case JobState::Printing:
        return u"印刷中"_s;
    case JobState::Stopped:
        return u"停止（プリンタを確かめてください）"_s;
    case JobState::Cancelled:
        return u"取り消し"_s;
    case JobState::Failed:
        return u"失敗"_s;
    case JobState::Done:
        return u"印刷済み"_s;
    }
    return {};
}

QString troubleInWords(const QueueState &state)
{
    // The keywords of RFC 8011, without what tells how grave each is.
    static const std::array<std::pair<QString, QString>, 12> known{{
        {u"media-empty"_s, u"用紙切れ"_s},
        {u"media-needed"_s, u"用紙切れ"_s},
        {u"media-jam"_s, u"紙詰まり"_s},
        {u"toner-empty"_s, u"トナー切れ"_s},
        {u"marker-supply-empty"_s, u"インク切れ"_s},
        {u"cover-open"_s, u"カバーが開いています"_s},
        {u"door-open"_s, u"カバーが開いています"_s},
        {u"offline"_s, u"電源か接続を確かめてください"_s},
        {u"shutdown"_s, u"電源か接続を確かめてください"_s},
        {u"timed-out"_s, u"電源か接続を確かめてください"_s},
        {u"connecting-to-device"_s, u"接続しています"_s},
        {u"paused"_s, u"一時停止中"_s},
    }};
    QStringList why;
    for (const QString &reason : state.reasons) {
        for (const auto &[name, words] : known) {
            if ((reason == name || reason.startsWith(name + u'-')) && !why.contains(words))
                why << words;
        }
    }
    const QString because = why.isEmpty() ? QString() : u'（' + why.join(u'、') + u'）';
    if (!state.isAccepting)
        return u"プリンタが印刷を受け付けていません"_s + because;
    if (state.isStopped)
        return u"プリンタが止まっています"_s + because;
    return why.isEmpty() ? QString() : u"プリンタを確かめてください"_s + because;
}

} // namespace printing
