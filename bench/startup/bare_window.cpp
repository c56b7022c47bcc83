// The floor: an empty Qt 6 Widgets window of Tintwright's size. With
// "--label" it carries one line of text, which is what any window that
// shows text pays on top of that: the font database is set up on first use.
#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

#include <cstring>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare"));
    window.setFixedSize(300, 400);
    if (argc > 1 && std::strcmp(argv[1], "--label") == 0)
        (new QVBoxLayout(&window))->addWidget(new QLabel(QStringLiteral("Pick Color")));
    window.show();
    return application.exec();
}
