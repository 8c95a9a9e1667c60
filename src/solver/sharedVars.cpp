#include "solver/sharedVars.h"

namespace siphons {

Matrix* Constraints = nullptr;
uint32_t NbConstraints = 0;
uint32_t Dimension = 0;
int32_t maxMinF = 0;
uint32_t nc = 0;

Matrix* Ray = nullptr;
Matrix* Sat = nullptr;
Matrix* MinF = nullptr;
uint32_t NbRay = 0;
uint32_t NbLines = 0;
uint32_t OldRays = 0;
uint32_t NbMaxRays = 500000;

Matrix* IndexLR = nullptr;
uint32_t NbIndexLR = 0;
Matrix* IndexRL = nullptr;
uint32_t NbIndexRL = 0;
FreeListBlock* FLR = nullptr;
uint32_t blockflag = 1;

std::vector<LiList*> LiListArray;
LiList* GenList = nullptr;

std::vector<uint32_t> LookUpMat;
std::vector<uint32_t> Border;
std::vector<uint32_t> BitRow;
std::vector<uint32_t> BitRow2;
std::vector<uint32_t> BitRow3;
std::vector<uint32_t> AdjBitRow;

uint32_t WCount = 0, BCount = 0;
uint32_t AdjWCount = 0, AdjBCount = 0;
uint32_t AdjBitmask = 0;
uint32_t TTEST = 0;

std::vector<int32_t> raytemprow, sattemprow, minftemprow;

int32_t adjcounter = 0;
int32_t redcounter = 0;
int32_t quickcounter = 0;
int32_t checkedlater = 0;

SolveCounts solveCounts{};

bool ArithmeticWrapped = false;
bool Homogeneous = true;

}  // namespace siphons
