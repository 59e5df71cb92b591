#pragma once

// The weather readings of a day or an event, listed and charted.

#include "shell/windowcontext.h"

#include <QWidget>

namespace slipbook::weather {

class frmWeatherHistory : public QWidget {
    Q_OBJECT
public:
    explicit frmWeatherHistory(const shell::WindowContext& ctx, QWidget* parent = nullptr);
};

}  // namespace slipbook::weather
