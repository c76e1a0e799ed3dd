// Private: the printers the layer offers. "PDF" (the layer's own writer of PDF files) is
// always there; the system's printers join it where the system lists any.
#pragma once

#include <string>
#include <vector>

namespace orlex::gdi {

// The layer's own printer, the default when the system has none.
constexpr const char* kPdfPrinter = "PDF";

struct SystemPrinters {
    std::vector<std::string> names;  // as the system lists them
    std::string defaultName;         // the system's default, empty when it has none
};

// The default printer: the system's default when it is one of its printers, else the
// system's first printer, else "PDF".
std::string PickDefaultPrinter(const SystemPrinters& printers);
// Whether a name (exact, case-sensitive) is a printer of the layer.
bool IsKnownPrinter(const SystemPrinters& printers, const std::string& name);
// Whether the name is one of the system's printers (not "PDF").
bool IsSystemPrinter(const SystemPrinters& printers, const std::string& name);
// The system's printers, asked once per process (the toolkit's printer list).
const SystemPrinters& QuerySystemPrinters();
// Puts the default printer where the platform keeps it for programs that look it up: the
// system profile's "windows" "device" value, "name,winspool,port". Once per process, when
// the application object exists.
void PublishDefaultPrinter();

}  // namespace orlex::gdi
