// Placeholder translation unit until the first piece of this subsystem lands.
namespace slipbook::views {}
