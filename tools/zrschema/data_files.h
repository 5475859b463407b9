// SPDX-License-Identifier: Apache-2.0
// Files of data and what libzrdata says of them, for the commands that check and convert data.
#pragma once

#include <zrdata/zrdata.h>

#include <memory>
#include <string>

#include "run.h"

namespace tool {

using DataPlan = std::unique_ptr<ZrDataPlan, decltype(&ZR_DATA_DeletePlan)>;
using DataResult = std::unique_ptr<ZrDataResult, decltype(&ZR_DATA_DeleteResult)>;

// Passes a status on, but for memory that ran out.
uint32_t OrThrow(uint32_t status);
DataPlan MakePlan(const ZrCtx *ctx);

// The text of a file, - for standard input. Throws a UsageError.
std::string ReadOrThrow(const std::string &file);
// The first character that is not blank tells, behind a byte order mark.
bool IsJson(const std::string &text);

// A fault or warning as it is said: "PATH: MESSAGE (TAG, APP-TAG)".
Problem ProblemOf(const ZrDataError &error, const std::string &file, bool isWarning);
// Says how many faults were found beyond those that are kept.
void SayHowManyMore(Run &run, const ZrDataResult *result, const std::string &file);
// Says all faults and warnings.
void SayAll(Run &run, const ZrDataResult *result, const std::string &file);

} // namespace tool
