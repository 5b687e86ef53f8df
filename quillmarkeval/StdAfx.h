// The platform headers that every source of the evaluators' module includes.
#pragma once

#include <AcFdEval.h>
#include <arxHeaders.h>
#include <dbfield.h>
#include <dbmain.h>
