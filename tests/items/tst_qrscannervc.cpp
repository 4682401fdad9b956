#include "demo/common/qrsymbol.h"
#include "host/cameraframesource.h"
#include "host/camerapermission.h"
#include "host/hapticfeedback.h"
#include "items/itemactionvc.h"
#include "items/itemstexts.h"
#include "items/qrframedecoder.h"
#include "items/qrpreviewview.h"
#include "support/logcapture.h"
#include "support/screentest.h"

#include <QFrame>
#include <QPointer>
#include <QSignalSpy>

Q_DECLARE_METATYPE(ravelin::CameraPermission::Status)
Q_DECLARE_METATYPE(std::optional<QImage>)

using namespace ravelin;
using namespace ravelin::test;

namespace {

const QSize hd(1280, 720);
// Where a code shows in the middle of a portrait phone's picture of a landscape frame.
const QPoint middle(540, 270);

// Pictures fed by the test instead of a camera.
class TestFrameSource : public CameraFrameSource
{
public:
    explicit TestFrameSource(bool available)
        : m_available(available)
    { }
    [[nodiscard]] bool isAvailable() const override { return m_available; }
    void start() override { m_running = true; }
    void stop() override { m_running = false; }
    [[nodiscard]] bool isRunning() const override { return m_running; }
    void feed(const QImage &frame)
    {
        if (m_running)
            emit frameArrived(frame);
    }
    void fail(const QString &description)
    {
        m_running = false;
        emit inputFailed(description);
    }

private:
    bool m_available = true;
    bool m_running = false;
};

class TestPermission : public CameraPermission
{
public:
    [[nodiscard]] Status status() const override { return current; }
    void request(std::function<void(bool)> completion) override
    {
        ++requests;
        QTimer::singleShot(0, [completion, granted = answer] { completion(granted); });
    }
    void openSettings() override { ++settingsOpened; }

    Status current = Status::authorized;
    bool answer = true;
    int requests = 0;
    int settingsOpened = 0;
};

class TestHaptics : public HapticFeedback
{
public:
    void vibrate() override { ++vibrations; }
    int vibrations = 0;
};

} // namespace

class TestQRScannerVC : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeHost(); }

    void startingTheCamera_data();
    void startingTheCamera();
    void outlineFollowsTheCode();
    void firstCodeHandedOverOnce();
    void scannedCodeFindsItsItem_data();
    void scannedCodeFindsItsItem();
    void closingStopsTheCamera_data();
    void closingStopsTheCamera();
    void cameraFailureIsLogged();
    void photoFallback_data();
    void photoFallback();

private:
    // The items screen of a task with four items (CP-1 and CP-2 open, CP-3
    // completed, one without a code), then its scanner with its camera running
    // unless `running` is false; nullptr when that does not happen in time.
    QRScannerVC *openScanner(bool running = true);
    // Feeds a frame and waits until the scanner has read it.
    bool feed(QRScannerVC *scanner, const QImage &frame);
    [[nodiscard]] ItemsVC *itemsScreen() const { return qobject_cast<ItemsVC *>(m_host->screens().value(1)); }

    TestPermission m_permission;
    TestHaptics m_haptics;
    bool m_cameraAvailable = true;
    std::chrono::milliseconds m_handOver{0};
    QPointer<TestFrameSource> m_camera;
};

void TestQRScannerVC::init()
{
    startHarness();
    servePumpStation();
    m_api->server.on("GET", itemsPath,
                     CannedResponse{200,
                                    answer(QJsonArray{itemJson(1, taskId, "Gauge", 3, QStringLiteral("CP-1")),
                                                      itemJson(2, taskId, "Seal", 3, QStringLiteral("CP-2")),
                                                      itemJson(3, taskId, "Valve", 1, QStringLiteral("CP-3")),
                                                      itemJson(4, taskId, "Gate", 3)})});
    m_permission = TestPermission();
    m_haptics = TestHaptics();
    m_picker = TestPicker();
    m_cameraAvailable = true;
    m_handOver = std::chrono::milliseconds(0);
}

QRScannerVC *TestQRScannerVC::openScanner(bool running)
{
    RavelinNavVC::Environment environment;
    environment.imagePicker = &m_picker;
    environment.cameraPermission = &m_permission;
    environment.hapticFeedback = &m_haptics;
    environment.cameraFrameSource = [this] {
        auto source = std::make_unique<TestFrameSource>(m_cameraAvailable);
        m_camera = source.get();
        return source;
    };
    // The hand-over as the test wants it; alerts stay up while the test reads them.
    Delays delays = Delays::uniform(std::chrono::minutes(1));
    delays.scannerHandOver = m_handOver;
    m_host = makeHost(*m_api, m_center, HostOptions{std::move(environment), delays});
    ItemsVC *items = openOnlyTask(*m_host, 4, timeoutMs);
    if (!items)
        return nullptr;
    items->checkpointBtnPressed()->trigger();
    auto *scanner = qobject_cast<QRScannerVC *>(m_host->topScreen());
    const auto started = [scanner] { return scanner->state() == QRScannerVC::State::running; };
    return scanner && (!running || QTest::qWaitFor(started, timeoutMs)) ? scanner : nullptr;
}

bool TestQRScannerVC::feed(QRScannerVC *scanner, const QImage &frame)
{
    auto *decoder = scanner->findChild<QrFrameDecoder *>(QStringLiteral("frameDecoder"));
    QSignalSpy decoded(decoder, &QrFrameDecoder::decoded);
    if (!QTest::qWaitFor([decoder] { return !decoder->isBusy(); }, timeoutMs))
        return false;
    m_camera->feed(frame);
    return decoded.wait(timeoutMs);
}

void TestQRScannerVC::startingTheCamera_data()
{
    using Status = CameraPermission::Status;
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("answer");
    QTest::addColumn<bool>("camera");
    QTest::addColumn<int>("requests");
    QTest::addColumn<bool>("running");
    QTest::addColumn<bool>("deniedAlert");
    QTest::newRow("already allowed") << Status::authorized << false << true << 0 << true << false;
    QTest::newRow("asked, allowed") << Status::notDetermined << true << true << 1 << true << false;
    QTest::newRow("asked, refused") << Status::notDetermined << false << true << 1 << false << true;
    QTest::newRow("refused before") << Status::denied << false << true << 1 << false << true;
    QTest::newRow("no camera") << Status::authorized << true << false << 0 << false << false;
}

void TestQRScannerVC::startingTheCamera()
{
    QFETCH(CameraPermission::Status, status);
    QFETCH(bool, answer);
    QFETCH(bool, camera);
    QFETCH(int, requests);
    QFETCH(bool, running);
    QFETCH(bool, deniedAlert);
    m_permission.current = status;
    m_permission.answer = answer;
    m_cameraAvailable = camera;
    LogCapture log;
    QRScannerVC *scanner = openScanner(false);
    QVERIFY(scanner);
    QTRY_VERIFY_WITH_TIMEOUT(scanner->state() == QRScannerVC::State::running || !topAlert(scanner).isEmpty()
                                 || !log.linesStartingWith(ItemsTexts::noCameraDevice).isEmpty(),
                             timeoutMs);
    QCOMPARE(m_permission.requests, requests);
    QCOMPARE(m_camera && m_camera->isRunning(), running);
    // What the label says while the camera runs: outlineFollowsTheCode.
    QCOMPARE(scanner->messageLabel()->isVisible(), running);
    QCOMPARE(log.count(ItemsTexts::noCameraDevice), camera ? 0 : 1);
    // The photo stays a way to scan whatever the camera does.
    QVERIFY(scanner->scanFromPhotoButton()->isVisible());
    if (!deniedAlert) {
        QVERIFY(topAlert(scanner).isEmpty());
        return;
    }
    QCOMPARE(topAlert(scanner).mid(0, 2),
             (QStringList{"Camera Access Denied", "Cannot perform a scan without camera permission"}));
    AlertView *alert = AlertPresenter::visibleAlert(scanner);
    QVERIFY(alert->actionButton(QStringLiteral("Cancel")));
    QVERIFY(alert->triggerAction(QStringLiteral("Allow")));
    QCOMPARE(m_permission.settingsOpened, 1);
}

void TestQRScannerVC::outlineFollowsTheCode()
{
    QRScannerVC *scanner = openScanner();
    QVERIFY(scanner);
    QFrame *outline = scanner->qrCodeFrameView();

    // Nothing in view: no outline, the instructions.
    QVERIFY(feed(scanner, QrSymbol::scene(hd, {})));
    QVERIFY(outline->geometry().isEmpty());
    QCOMPARE(scanner->messageLabel()->text(), ItemsTexts::scannerInstructions());
    QCOMPARE(scanner->state(), QRScannerVC::State::running);

    // A code in view is outlined where the preview shows it: both dark and light modules inside.
    QVERIFY(feed(scanner, QrSymbol::scene(hd, {{QStringLiteral("CP-1"), QPoint(480, 30)}})));
    QCOMPARE(scanner->messageLabel()->text(), ItemsTexts::qrCodeDetected());
    const QRect drawn = outline->geometry().translated(-scanner->videoPreviewLayer()->pos());
    QVERIFY(!drawn.isEmpty());
    const QImage shown = scanner->videoPreviewLayer()->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
    QSet<bool> seen;
    for (int y = drawn.top() + 4; y < drawn.bottom() - 4; y += 2)
        for (int x = drawn.left() + 4; x < drawn.right() - 4; x += 2)
            seen.insert(qGray(shown.pixel(x, y)) < 64);
    QCOMPARE(seen.size(), 2);
}

void TestQRScannerVC::firstCodeHandedOverOnce()
{
    QRScannerVC *scanner = openScanner();
    QVERIFY(scanner);
    const QImage twoCodes
        = QrSymbol::scene(hd, {{QStringLiteral("CP-1"), QPoint(470, 60)}, {QStringLiteral("CP-2"), QPoint(600, 400)}});
    const QString first = QrCodeReader::read(twoCodes).first().text;
    QVERIFY(feed(scanner, twoCodes));
    QCOMPARE(scanner->state(), QRScannerVC::State::detected);
    QVERIFY(!m_camera->isRunning());
    QCOMPARE(m_haptics.vibrations, 1);
    // Still on screen for a moment, showing what it found.
    QCOMPARE(m_host->topScreen(), scanner);
    QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<ItemActionVC *>(m_host->presentedScreen()), timeoutMs);
    QCOMPARE(m_host->topScreen(), itemsScreen());
    QCOMPARE(m_haptics.vibrations, 1);
    // Only the first code of the picture was handed over.
    for (const ItemPtr &item : itemsScreen()->viewModel()->task()->itemList.items)
        QCOMPARE(item->isQRMapped, item->qrCode == first);
}

void TestQRScannerVC::scannedCodeFindsItsItem_data()
{
    // Which item a code finds, and the alert when none: tst_itemsvm qrMatch.
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("choosingSeveral");
    QTest::addColumn<QString>("opens"); // empty: the view model's alert shows
    QTest::newRow("open item") << "CP-2" << false << "Seal";
    // Choosing several is let go of, and the scanned item opens on its own.
    QTest::newRow("open item, choosing several") << "CP-2" << true << "Seal";
    QTest::newRow("unknown code") << "CP-9" << false << "";
}

void TestQRScannerVC::scannedCodeFindsItsItem()
{
    QFETCH(QString, code);
    QFETCH(bool, choosingSeveral);
    QFETCH(QString, opens);
    QRScannerVC *scanner = openScanner();
    QVERIFY(scanner);
    ItemsVC *items = itemsScreen();
    if (choosingSeveral) {
        items->setMultipleSelection(true);
        items->viewModel()->select(items->viewModel()->task()->itemList.items.at(0), true);
    }
    QVERIFY(feed(scanner, QrSymbol::scene(hd, {{code, middle}})));
    QTRY_COMPARE_WITH_TIMEOUT(m_host->topScreen(), items, timeoutMs);
    if (opens.isEmpty()) {
        QVERIFY(!m_host->presentedScreen());
        QCOMPARE(topAlert(items).mid(0, 2),
                 (QStringList{"No Item Detected", "Cannot find item matching the scanned QR"}));
        return;
    }
    auto *action = qobject_cast<ItemActionVC *>(m_host->presentedScreen());
    QVERIFY(action);
    QCOMPARE(action->viewModel()->items().size(), 1);
    QCOMPARE(action->viewModel()->items().first()->name, opens);
    QVERIFY(action->completeButton()->isEnabled());
    QVERIFY(!items->isMultipleSelection());
    QCOMPARE(items->viewModel()->selectedItems().size(), 1);
}

void TestQRScannerVC::closingStopsTheCamera_data()
{
    QTest::addColumn<bool>("codeFound");
    QTest::newRow("while looking") << false;
    QTest::newRow("during the hand-over") << true;
}

void TestQRScannerVC::closingStopsTheCamera()
{
    QFETCH(bool, codeFound);
    // A hand-over that would come long after the screen is closed.
    m_handOver = std::chrono::minutes(1);
    QRScannerVC *scanner = openScanner();
    QVERIFY(scanner);
    if (codeFound)
        QVERIFY(feed(scanner, QrSymbol::scene(hd, {{QStringLiteral("CP-2"), middle}})));
    const QPointer<QRScannerVC> watched(scanner);
    m_host->pop();
    QVERIFY(!m_camera->isRunning());
    // Nothing is handed over once the screen is gone.
    QTRY_VERIFY_WITH_TIMEOUT(!watched, timeoutMs);
    QVERIFY(!m_host->presentedScreen());
    QCOMPARE(m_host->topScreen(), itemsScreen());
    QCOMPARE(m_haptics.vibrations, codeFound ? 1 : 0);
}

void TestQRScannerVC::cameraFailureIsLogged()
{
    LogCapture log;
    QRScannerVC *scanner = openScanner();
    QVERIFY(scanner);
    m_camera->fail(QStringLiteral("device lost"));
    QCOMPARE(log.count(QStringLiteral("The camera input failed: device lost")), 1);
    QCOMPARE(scanner->state(), QRScannerVC::State::idle);
    QVERIFY(scanner->videoPreviewLayer()->isHidden());
    QVERIFY(scanner->scanFromPhotoButton()->isVisible());
}

void TestQRScannerVC::photoFallback_data()
{
    QTest::addColumn<std::optional<QImage>>("photo");
    QTest::addColumn<QString>("opens");
    QTest::addColumn<QStringList>("alert");
    QTest::newRow("photo of a code") << std::optional<QImage>(
        QrSymbol::scene(QSize(3000, 4000), {{"CP-2", {1300, 1800}}}, 12))
                                     << "Seal" << QStringList{};
    QTest::newRow("photo without a code") << std::optional<QImage>(QrSymbol::scene(QSize(800, 600), {})) << ""
                                          << QStringList{"Fail", "Couldn't detect QR"};
    QTest::newRow("no photo picked") << std::optional<QImage>() << "" << QStringList{};
}

void TestQRScannerVC::photoFallback()
{
    QFETCH(std::optional<QImage>, photo);
    QFETCH(QString, opens);
    m_cameraAvailable = false;
    m_picker.next = photo;
    QRScannerVC *scanner = openScanner(false);
    QVERIFY(scanner);
    auto *decoder = scanner->findChild<QrFrameDecoder *>(QStringLiteral("photoDecoder"));
    QSignalSpy read(decoder, &QrFrameDecoder::decoded);
    scanner->scanFromPhotoButton()->click();
    if (photo) {
        QVERIFY(read.wait(timeoutMs));
    } else {
        // The picker answers on the next turn of the event loop; this comes after it.
        bool answered = false;
        QTimer::singleShot(0, [&answered] { answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, timeoutMs);
    }
    if (opens.isEmpty()) {
        QTEST(topAlert(scanner).mid(0, 2), "alert");
        QCOMPARE(m_host->topScreen(), scanner);
        QCOMPARE(m_haptics.vibrations, 0);
        return;
    }
    QCOMPARE(m_haptics.vibrations, 1);
    QTRY_VERIFY_WITH_TIMEOUT(qobject_cast<ItemActionVC *>(m_host->presentedScreen()), timeoutMs);
    QCOMPARE(qobject_cast<ItemActionVC *>(m_host->presentedScreen())->viewModel()->items().first()->name, opens);
}

QTEST_MAIN(TestQRScannerVC)
#include "tst_qrscannervc.moc"
