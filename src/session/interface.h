#pragma once
// Interface variables: the settings that kernel and front end share.

#include "store/dag.h"

namespace korel {

struct InterfaceVariables {
  char prompt[128] = "> ";
  char debuggerPrompt[128] = "DBG> ";
  int echo = 1;
  int errorbreak = 1;
  int noStatus = 0;
  int quiet = 0;
  int reserved = 1;
  int warnlevel = 3;
  int screenwidth = 79;
  int screenheight = 25;
  int display = 1;  // `;` sets it, `:` clears it
  int errorcursor = 1;
  int prettyprint = 1;
  int verboseproc = 1;
  int labelling = 1;
  int indentamount = 4;
  int labelwidth = 20;
  int ansi = 0;
  int showassumed = 1;
  char imaginaryunit[80] = "I";
  int longdelim = 1;
  int rtablesize = 10;
  char plotdevice[24] = "char";
  char plotoutput[1024] = "terminal";
  char* plotoptions = nullptr;     // heap text or none
  unsigned char preplot[81] = {};  // count byte, then bytes
  unsigned char postplot[81] = {};
  double latexwidth = 5.0;
};
extern InterfaceVariables defaultNerinVariables;

/// Sets or reads one variable: `arguments` is the EXPSEQ (name, value) or (name). The empty sequence
/// or the value; an ERROR object that holds message and parameters on failure. Nothing is raised.
DAG setinterface(DAG arguments, InterfaceVariables& record);
DAG getinterface(DAG arguments, InterfaceVariables& record);
/// A copy of the present settings from the system heap, or null.
InterfaceVariables* newIFVars();
void deleteIFVars(InterfaceVariables* record);
/// Replaces a text field that lives in the system heap; 0, or -1 when that fails.
int setIFStringVar(char** field, const char* text);
/// Keeps what the front end reports at start, and sets it again after a restart.
void RememberInterface();
void ResetInterface();

}  // namespace korel
