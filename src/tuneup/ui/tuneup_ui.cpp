// Placeholder translation unit until the first window of this subsystem lands.
namespace slipbook::tuneup::ui {}
