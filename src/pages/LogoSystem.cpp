#include "pages/LogoSystem.h"

#include "log/LogMessage.h"
#include "platform/directories.h"
#include "platform/suite_settings.h"

namespace qlx {

LogoSystem ThisLogoSystem() {
  return {
      .decode = platform::DecodeImageFile,
      .encode = platform::EncodeBmp,
      .files = &platform::SystemFileStore(),
      .files_in = platform::RegularFilesIn,
      .remove_file = platform::RemoveFile,
      .data_directory = platform::DataDirectory,
      .temporary_directory = platform::TemporaryDirectory(),
      .now = [] { return platform::ThisProgram().Now(); },
      .log_error = [](const std::string& line) { LogMessage(MZP_PRINTER, LEVEL_ERROR, "%s", line.c_str()); },
  };
}

}  // namespace qlx
