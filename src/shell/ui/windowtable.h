#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <array>
#include <functional>

namespace slipbook::shell {

// A window that exists once per car: the prediction and tune-up programs.
class ProgramWindow {
public:
    virtual ~ProgramWindow() = default;
    virtual QWidget* Widget() = 0;
    virtual QString CarNumber() const = 0;
    // Shows the window again for its car, refreshed.
    virtual void FormReLoad() = 0;
};

class PredictionWindow : public ProgramWindow {
public:
    virtual void ApplyWeather(const QString& corrFactorText, const QString& densityAltText) = 0;
};

class TuneUpWindow : public ProgramWindow {
public:
    virtual void ApplyAirDensity(const QString& airDensityText) = 0;
};

// Up to 100 live windows, in slots 1 to 100, keyed by the car's number. A closed window leaves a
// dead slot that the next look clears.
template <class Window>
class WindowTable {
public:
    static constexpr int kSlots = 100;

    // The live window on the car, or null; dead slots on the way are cleared.
    Window* Find(const QString& carNumber) {
        for (int i = 1; i <= kSlots; ++i) {
            if (!Live(i)) {
                Clear(i);
                continue;
            }
            if (windows_[i]->CarNumber() == carNumber) {
                return windows_[i];
            }
        }
        return nullptr;
    }

    // The first free slot, or 0 when all 100 hold live windows.
    int Valid() {
        for (int i = 1; i <= kSlots; ++i) {
            if (!Live(i)) {
                Clear(i);
                return i;
            }
        }
        return 0;
    }

    void Put(int slot, Window* window) {
        windows_[slot] = window;
        widgets_[slot] = window->Widget();
    }

    void ForEachLive(const std::function<void(Window&)>& act) {
        for (int i = 1; i <= kSlots; ++i) {
            if (Live(i)) {
                act(*windows_[i]);
            }
        }
    }

    void ClearAll() {
        for (int i = 1; i <= kSlots; ++i) {
            Clear(i);
        }
    }

private:
    bool Live(int i) const { return windows_[i] != nullptr && !widgets_[i].isNull(); }
    void Clear(int i) {
        windows_[i] = nullptr;
        widgets_[i].clear();
    }

    std::array<Window*, kSlots + 1> windows_{};
    std::array<QPointer<QWidget>, kSlots + 1> widgets_{};
};

}  // namespace slipbook::shell
