#pragma once

struct Globale;

// "Setup.ini" in the program folder: the language and the four recent files.
class Settings {
public:
    explicit Settings(Globale &g);

    bool ReadSettings();
    bool WriteSettings();

private:
    void buildSettingsPath();

    Globale &g_;
};
