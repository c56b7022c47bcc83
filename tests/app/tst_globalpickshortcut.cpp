#include "FakeGlobalShortcutsPortal.h"
#include "PrivateSessionBus.h"

#include "UiTestSupport.h"
#include "app/GlobalPickShortcut.h"
#include "app/TintwrightApp.h"
#include "ui/MainWindow.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

// The shortcut's portal protocol against a fake portal on a private bus.
class TestGlobalPickShortcut : public QObject
{
    Q_OBJECT

private slots:
    void activation_data()
    {
        QTest::addColumn<bool>("fromPortal");
        QTest::addColumn<QString>("session");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("activations");
        QTest::newRow("the portal, our session and id")
            << true << FakeGlobalShortcutsPortal::sessionPath << GlobalPickShortcut::shortcutId << 1;
        QTest::newRow("another client")
            << false << FakeGlobalShortcutsPortal::sessionPath << GlobalPickShortcut::shortcutId << 0;
        QTest::newRow("another session") << true << "/org/freedesktop/portal/desktop/session/x/other"
                                         << GlobalPickShortcut::shortcutId << 0;
        QTest::newRow("another shortcut") << true << FakeGlobalShortcutsPortal::sessionPath << "other" << 0;
    }

    void activation()
    {
        QFETCH(bool, fromPortal);
        QFETCH(QString, session);
        QFETCH(QString, id);
        QFETCH(int, activations);
        QDBusConnection portalBus = connect(QStringLiteral("portal"));
        FakeGlobalShortcutsPortal portal(portalBus);
        QVERIFY(portal.registerOnBus());
        GlobalPickShortcut shortcut(connect(QStringLiteral("client")));
        QSignalSpy bound(&shortcut, &GlobalPickShortcut::bound);
        QSignalSpy activated(&shortcut, &GlobalPickShortcut::activated);

        shortcut.start();
        QVERIFY(bound.wait(5000));
        QCOMPARE(portal.boundIds, QStringList{GlobalPickShortcut::shortcutId});
        QCOMPARE(portal.boundSessions, QStringList{FakeGlobalShortcutsPortal::sessionPath});

        FakeGlobalShortcutsPortal::activate(fromPortal ? portalBus : connect(QStringLiteral("rogue")),
                                            session, id);
        if (activations)
            QVERIFY(activated.wait(2000));
        else
            QTest::qWait(200);
        QCOMPARE(activated.size(), activations);
    }

    void answerFromAnotherClientIsIgnored()
    {
        QDBusConnection portalBus = connect(QStringLiteral("portal"));
        FakeGlobalShortcutsPortal portal(portalBus);
        QVERIFY(portal.registerOnBus());
        QDBusConnection clientBus = connect(QStringLiteral("client"));
        GlobalPickShortcut shortcut(clientBus);
        QSignalSpy bound(&shortcut, &GlobalPickShortcut::bound);
        shortcut.start();
        // Another client answers first on the request path the portal will use.
        QTRY_VERIFY(!portal.requestPaths.isEmpty());
        QDBusMessage forged = QDBusMessage::createSignal(portal.requestPaths.first(),
                                                         QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        forged << 0u << QVariantMap{{QStringLiteral("session_handle"), QStringLiteral("/forged")}};
        connect(QStringLiteral("rogue")).send(forged);
        QVERIFY(bound.wait(5000));
        QCOMPARE(shortcut.sessionHandle(), FakeGlobalShortcutsPortal::sessionPath);
        QCOMPARE(portal.boundSessions, QStringList{FakeGlobalShortcutsPortal::sessionPath});
    }

    void activationPicksCopiesAndShows()
    {
        QDBusConnection portalBus = connect(QStringLiteral("portal"));
        FakeGlobalShortcutsPortal portal(portalBus);
        QVERIFY(portal.registerOnBus());
        QTemporaryDir folder;
        TintwrightApp app(folder.path());
        QPointer<ManualSampler> sampler;
        app.tintwrightService().setSamplerFactory([&sampler](QObject *parent) -> ColorSampler * {
            sampler = new ManualSampler(parent);
            return sampler;
        });
        app.listenForGlobalShortcut(connect(QStringLiteral("client")));
        QTRY_COMPARE(portal.boundIds.size(), 1);
        QVERIFY(!app.window().isVisible());

        FakeGlobalShortcutsPortal::activate(portalBus, FakeGlobalShortcutsPortal::sessionPath,
                                            GlobalPickShortcut::shortcutId);
        QTRY_VERIFY(sampler && sampler->started);
        sampler->finishWith(1.0, 0.0, 0.0);
        QTRY_VERIFY(app.window().isVisible());
        QCOMPARE(clipboardText(), QStringLiteral("#FF0000"));
        QCOMPARE(app.historyStorage().colors().size(), 1);
    }

private:
    QDBusConnection connect(const QString &name)
    {
        return QDBusConnection::connectToBus(m_bus.address(), name + QString::number(++m_connections));
    }
    PrivateSessionBus m_bus;
    int m_connections = 0;
};

QTEST_MAIN(TestGlobalPickShortcut)
#include "tst_globalpickshortcut.moc"
