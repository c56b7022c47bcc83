#include "ui/TintwrightApp.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tintwright"));
    QApplication::setApplicationVersion(QStringLiteral(TINTWRIGHT_VERSION));

    TintwrightApp app;
    app.show();
    return application.exec();
}
