// An installation in a folder of its own has all its files, and the program in it works with them alone.
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

class TestInstall : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void holdsItsFiles_data();
    void holdsItsFiles();
    void convertsWithItsHelper();
    void startsWithItsData();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString program() const
    {
        return path(u"usr/"_s + QStringLiteral(BIN_FOLDER) + u"/kanbalore"_s);
    }
    QProcessEnvironment environment();

    QTemporaryDir m_folder;
};

// With DESTDIR, as packages are made: the prefix is not the place where the files lie in the end.
void TestInstall::initTestCase()
{
    QProcess install;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DESTDIR"_s, m_folder.path());
    install.setProcessEnvironment(environment);
    install.setProcessChannelMode(QProcess::MergedChannels);
    install.start(QStringLiteral(CMAKE_PROGRAM),
                  {u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s, u"/usr"_s});
    QVERIFY(install.waitForFinished(60'000));
    const QByteArray said = install.readAll();
    QVERIFY2(install.exitStatus() == QProcess::NormalExit && install.exitCode() == 0, said.constData());
}

// Nothing of the build's place: a helper or an initial file beside it must not stand in for a missing one.
QProcessEnvironment TestInstall::environment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, u"/usr/bin:/bin"_s);
    environment.insert(u"HOME"_s, path(u"home"_s));
    environment.insert(u"XDG_DATA_HOME"_s, path(u"home/data"_s));
    environment.insert(u"XDG_CONFIG_HOME"_s, path(u"home/config"_s));
    environment.remove(u"KANBALORE_FOLDER"_s);
    return environment;
}

void TestInstall::holdsItsFiles_data()
{
    QTest::addColumn<bool>("isProgram");
    const QString bin = QStringLiteral(BIN_FOLDER) + u'/';
    const QString helpers = QStringLiteral(HELPER_FOLDER) + u'/';
    const QString data = QStringLiteral(DATA_FOLDER) + u'/';
    const auto row = [](const QString &name, bool isProgram) {
        QTest::newRow(qPrintable(name)) << isProgram;
    };
    row(bin + u"kanbalore"_s, true);
    row(helpers + u"kanbalore-old-file-reader"_s, true);
    row(helpers + u"postal-data"_s, true);
    row(data + u"kanbalore/Kanbalore.cdb"_s, false);
    row(data + u"applications/kanbalore.desktop"_s, false);
    row(data + u"icons/hicolor/scalable/apps/kanbalore.svg"_s, false);
    row(data + u"mime/packages/kanbalore.xml"_s, false);
    if (QFile::exists(QStringLiteral(BUILD_FOLDER) + u"/bin/ZIPCODE.txt"_s)) {
        for (const char16_t *name :
             {u"ZIPCODE.txt", u"ZIPID1.txt", u"ZipCode1.txt", u"ZIPCODE2.txt", u"ZIPORIGIN.txt"})
            row(data + u"kanbalore/"_s + QString::fromUtf16(name), false);
    }
}

void TestInstall::holdsItsFiles()
{
    QFETCH(bool, isProgram);
    const QFileInfo file(path(u"usr/"_s + QString::fromUtf8(QTest::currentDataTag())));
    QVERIFY(file.isFile() && file.size() > 0);
    QCOMPARE(file.isExecutable(), isProgram);
    QVERIFY(file.permission(QFile::ReadOther));
}

void TestInstall::convertsWithItsHelper()
{
    QProcess conversion;
    conversion.setProcessEnvironment(environment());
    conversion.start(program(), {u"--convert"_s, QStringLiteral(LEGACY_FILE), path(u"converted.cdb"_s)});
    QVERIFY(conversion.waitForFinished(60'000));
    const QByteArray said = conversion.readAllStandardError();
    QVERIFY2(conversion.exitCode() == 0 && QFile::exists(path(u"converted.cdb"_s)), said.constData());
}

// The first start of a new user: the delivered files come into the user's own folder.
void TestInstall::startsWithItsData()
{
    const QDir delivered(path(u"usr/"_s + QStringLiteral(DATA_FOLDER) + u"/kanbalore"_s));
    const QDir own(path(u"home/data/Kanbalore"_s));
    QProcess window;
    window.setProcessEnvironment(environment());
    window.start(program(), {});
    QVERIFY(window.waitForStarted());
    const QStringList names = delivered.entryList(QDir::Files);
    for (const QString &name : names)
        QTRY_VERIFY2_WITH_TIMEOUT(own.exists(name), qPrintable(name), 30'000);
    QCOMPARE(window.state(), QProcess::Running);
    window.kill();
    QVERIFY(window.waitForFinished());
}

QTEST_GUILESS_MAIN(TestInstall)
#include "tst_install.moc"
