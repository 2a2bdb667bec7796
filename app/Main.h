#pragma once

#include <QMainWindow>
#include <memory>

class RadioNetControl;
struct MainForm;

// The main window: builds the designed form, makes the subsystems in the order
// they depend on each other, wires every signal to its handler through the guard,
// and runs the start-up. It holds no rules of its own.
class Main : public QMainWindow {
    Q_OBJECT

public:
    // Takes ownership of rf1 (reparented, objectName "RF1"); runs Form_Load before
    // returning.
    Main(RadioNetControl *rf1, const QString &programFolder, const QString &commandLine,
         QWidget *parent = nullptr);
    ~Main() override;

protected:
    // Form_QueryUnload: closing ends the program at once, no prompt, no saving.
    void closeEvent(QCloseEvent *event) override;

private:
    struct Parts;
    void wire();

    std::unique_ptr<MainForm> ui;
    std::unique_ptr<Parts> parts;
};
