// A program of the toolkit the views are made with that has one window,
// never shown, and does nothing: what any such program pays for the
// desktop's changes, however little it does with them. ManyWindows runs it
// beside Tarnwick and prints its CPU per new window as the floor below
// which Tarnwick's own figure cannot go.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    // A real window on the server, as the hidden panel has.
    window.winId();
    return application.exec();
}
