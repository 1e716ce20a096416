#pragma once

class QWidget;

namespace marovia {

class Binds;
class frmMain;

// The panel at the right: what the chosen mode offers, or how to choose one.
QWidget& MakeSidePanel(frmMain& form, Binds& binds);

}  // namespace marovia
