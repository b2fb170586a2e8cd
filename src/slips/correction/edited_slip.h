#pragma once

#include "book/counterpart_name.h"
#include "book/counterpart_search.h"
#include "book/returned_goods.h"
#include "db/recordset.h"
#include "slips/correction/slip_recalculation.h"

#include <utility>

class QWidget;

namespace slips
{

/// The slip that a correction screen shows, with what is edited and not saved yet: its header among all
/// headers of the list, its lines, its counterpart. Before edits are stored that leave the slip's figures in
/// disagreement, and before such a slip is left or printed, the clerk is asked. What another program has made
/// of the slip or of its counterpart meanwhile is read before each question, and once more in the transaction
/// that stores the answer: where it is not what was asked about, she is asked anew.
class EditedSlip : public QObject
{
    Q_OBJECT

public:
    /// \a screen is behind the questions.
    EditedSlip(db::Connection &connection, const book::SlipKind &kind,
               const book::CounterpartSearch &counterparts, QWidget *screen);

    db::Recordset headers;
    db::Recordset lines;
    db::Recordset counterpart;

    [[nodiscard]] const book::SlipKind &kind() const { return m_kind; }
    [[nodiscard]] qint64 id() const { return headers.currentKey(); }
    [[nodiscard]] book::CounterpartKey counterpartKey() const;
    [[nodiscard]] book::TaxClass taxClass() const; // of a counterpart that is known
    [[nodiscard]] bool isDirty() const { return headers.isDirty() || lines.isDirty(); }
    /// Whether there is anything that takeBack() would take back.
    [[nodiscard]] bool canTakeBack() const { return isDirty() || lines.isNewRow(); }

    /// Opens the lines of the current header, unless they are open already. \return whether they had to be
    base::Result<bool> openLines();
    /// From now on the lines that are open are no slip's. \return whose they were
    qint64 forgetLines(qint64 instead = noSlip) { return std::exchange(m_shown, instead); }
    /// Reads who the counterpart is, as edited.
    base::Status openCounterpart();
    /// What disagrees now is how the slip was found.
    void acceptTax();

    /// What is to be said of the slip as it stands, edits and all.
    [[nodiscard]] QStringList remarks() const;
    [[nodiscard]] bool isLeftOpen() const;
    /// Whether it can be closed here: it was left open, or its tax line is missing.
    [[nodiscard]] bool canBeClosed() const;
    /// What closing the slip would book as its tax, yen; nothing where that cannot be computed.
    [[nodiscard]] std::optional<double> taxDue() const;

    // Where 金額 or the tax does not fit any more, the clerk is asked: computed anew, as they stand, or back.
    // The error is `cancelled` then. After a failure that is to be told, the screen shows what the file
    // holds, below the edits.

    /// Saves header and line.
    base::Status update();
    /// Saves them where they are edited; a new line among them is asked about as well. The clerk may also
    /// drop the edits.
    base::Status storeKnowingly();
    /// The same, before another slip is shown; asks of a tax that does not fit any more, too.
    base::Status leave();
    /// The same, before the slip is printed; asks of all that does not fit, however it was found.
    base::Status storeForPaper();
    /// Before another line becomes current: saves this one, or asks.
    base::Status leaveLine();
    /// Before the screen closes. \return whether it may; what went wrong was told
    bool mayClose();

    void takeBack();
    base::Status addLine();
    base::Status close();

    /// Reads anew what is not edited; a slip that is gone leaves the list.
    void showAsStored();

private:
    static constexpr qint64 noSlip = -1;
    using Lines = std::vector<book::SlipLine>;
    using Step = db::Recordset::Step;

    enum class Way { Mend, AsItIs, Drop };
    struct Question;
    struct Storing;

    [[nodiscard]] Figures figures(std::vector<KeyedLine> all, std::optional<book::TaxClass> taxClass) const;
    [[nodiscard]] Figures shown() const;
    [[nodiscard]] base::Result<Figures> stored() const;
    [[nodiscard]] QString newTaxDoubt(const Figures &figures) const;
    [[nodiscard]] QString lineDoubt() const;
    [[nodiscard]] QString doubt(const Figures &figures) const;
    [[nodiscard]] Recalculation mending(const Figures &figures, std::optional<qint64> line,
                                        bool anyTax) const;
    [[nodiscard]] Recalculation mendingOfEdits(const Figures &figures) const;
    void agreeTo(const Figures &figures);

    std::optional<Way> ask(const Question &question);
    [[nodiscard]] std::optional<Question> editsQuestion(const Figures &figures, const QString &remark,
                                                        const QString &newLine) const;
    [[nodiscard]] std::optional<Question> slipQuestion(const Figures &figures, const QString &remark,
                                                       const Recalculation &mending,
                                                       const QString &verb) const;
    base::Status readAnew();
    base::Status settle(const Storing &storing);
    base::Status store(Way way, const Storing &storing, const Figures &asked,
                       const std::optional<Question> &question);
    base::Status failed(const base::Status &status);
    base::Status checkFigures(const Figures &asked) const;
    base::Status storeAll(const Step &check);
    bool tell(const base::Status &status);

    db::Connection &m_connection;
    const book::SlipKind m_kind;
    const book::CounterpartSearch &m_counterparts;
    QWidget *m_screen;
    qint64 m_shown = 0;                           // whose lines are open
    std::optional<book::OriginalSlip> m_original; // the slip whose goods come back on it
    QString m_acceptedTax;                        // what disagreed when the slip was found, or was agreed to
    QString m_agreed;                             // all that disagreed when the clerk left it so
};

} // namespace slips
