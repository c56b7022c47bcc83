// The floor: an empty Qt 6 Widgets window of Tintwright's size.
#include <QApplication>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare"));
    window.setFixedSize(300, 400);
    window.show();
    return application.exec();
}
