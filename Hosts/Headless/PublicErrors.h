// The public library's one kind of error for what the host's parts throw.
#pragma once

#include <string>

#include "Foundation/NSException.h"
#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PrintableText.h"
#include "Hosts/Headless/Scenario.h"
#include "zelkon/error.h"

namespace zelkon {

// Runs the body. `refusal` is what a ScenarioError means there, `fileError` what a FileError means.
template <typename Body>
auto withPublicErrors(plot::Error::Reason refusal, plot::Error::Reason fileError, Body body) {
  try {
    return body();
  } catch (const ScenarioError& error) {
    throw plot::Error(refusal, error.what());
  } catch (const FileError& error) {
    throw plot::Error(fileError, error.what());
  } catch (const NSException& exception) {
    throw plot::Error(plot::Error::Reason::noFonts, printableText(exception.description()));
  }
}

}  // namespace zelkon
