#include "simulator/tool/WordLists.h"

namespace ostrel::simulator::words {
namespace {

constexpr std::string_view kFirstNames[] = {
    "Kristin", "Helen",  "Ruth",    "Inez",    "Marcus", "Elena",   "Owen",    "Priya",
    "Daniel",  "Teresa", "Walter",  "Joanna",  "Samuel", "Beatriz", "Carl",    "Naomi",
    "Victor",  "Alice",  "Raymond", "Sonia",   "Peter",  "Grace",   "Luis",    "Hannah",
    "Arthur",  "Mei",    "Thomas",  "Dolores", "Frank",  "Irene",   "Anders",  "Yolanda",
    "Gordon",  "Carmen", "Nathan",  "Sylvia",  "Hugh",   "Leila",   "Vincent", "Marta"};
constexpr std::string_view kLastNames[] = {
    "Abbott",    "Okafor",  "Bellweather", "Castro",    "Dunne",     "Espinoza",  "Farrow",
    "Gallo",     "Hendry",  "Ishikawa",    "Jorgensen", "Kowalski",  "Lindqvist", "Moreno",
    "Nakamura",  "Oakes",   "Pruitt",      "Quigley",   "Rasmussen", "Salazar",   "Tillman",
    "Underhill", "Vasquez", "Whitlock",    "Yarrow",    "Zamora",    "Ashby",     "Barlow",
    "Cordero",   "Delgado", "Everett",     "Finch",     "Greco",     "Holloway",  "Ibarra",
    "Jessup",    "Kincaid", "Larkin",      "Maddox",    "Novak",     "Ortega",    "Penrose",
    "Reyes",     "Stroud",  "Thorne",      "Valdez",    "Winslow",   "Young"};
constexpr std::string_view kStreets[] = {
    "Cypress Ln",    "Alder St",     "Harbor Walk",    "Quarry Rd",     "Main Street",
    "Mill Creek Rd", "Orchard Ave",  "Kentucky St",    "Walnut St",     "B Street",
    "Western Ave",   "Ridgeview Dr", "Stony Point Rd", "Old Depot Ln",  "Prospect St",
    "Vine Hill Rd",  "Fourth St",    "Eucalyptus Way", "Lakeville Hwy", "Sunnyslope Ave"};
constexpr City kCities[] = {
    {"Petaluma", "CA", "94952", "707"},     {"Petaluma", "CA", "94954", "707"},
    {"Santa Rosa", "CA", "95404", "707"},   {"Sebastopol", "CA", "95472", "707"},
    {"Rohnert Park", "CA", "94928", "707"}, {"Cotati", "CA", "94931", "707"},
    {"Novato", "CA", "94947", "415"},       {"San Rafael", "CA", "94901", "415"},
    {"Sonoma", "CA", "95476", "707"},       {"Napa", "CA", "94559", "707"},
    {"Vallejo", "CA", "94590", "707"},      {"Healdsburg", "CA", "95448", "707"}};
constexpr std::string_view kPlaces[] = {
    "Alder Street", "Harbor",    "Quarry Road", "Mill Creek", "Three Oaks", "Redwood",
    "Bayside",      "Old Depot", "Ridgeview",   "Sunnyslope", "Coastal",    "Valley",
    "Golden Hill",  "Riverside", "Lakeville",   "North Bay",  "Two Rock",   "Penngrove",
    "Westside",     "Cypress",   "Marina",      "Hilltop",    "Pioneer",    "Orchard"};
constexpr std::string_view kTrades[] = {
    "Landscaping",   "Veterinary Clinic", "Books",        "Construction", "Plumbing",
    "Roofing",       "Property Care",     "Boat Works",   "Dairy",        "Bakery",
    "Auto Repair",   "Nursery",           "Joinery",      "Painting",     "Vineyards",
    "Feed and Seed", "School District",   "Electric",     "Fencing",      "Cabinets",
    "Inn",           "Upholstery",        "Pool Service", "Poultry Farm"};
constexpr std::string_view kWares[] = {"Fasteners",
                                       "Lumber",
                                       "Paint Supply",
                                       "Tool Company",
                                       "Plumbing Supply",
                                       "Electrical Supply",
                                       "Garden Wholesale",
                                       "Hardware Distributors",
                                       "Steel",
                                       "Freight",
                                       "Adhesives",
                                       "Glass"};
constexpr std::string_view kJobs[] = {"Kitchen remodel", "Barn repair",   "New fence",   "Deck",
                                      "Second floor",    "Office wiring", "Greenhouse",  "Roof",
                                      "Showroom",        "Warehouse",     "Guest house", "Dock"};

constexpr std::string_view kHammers[] = {"16 oz", "20 oz", "28 oz framing"};
constexpr std::string_view kLengths[] = {"1 in", "1-1/2 in", "2 in", "2-1/2 in", "3 in"};
constexpr std::string_view kDiameters[] = {"1/2 in", "3/4 in", "1 in"};
constexpr std::string_view kColors[] = {"white", "black", "barn red", "green"};
constexpr std::string_view kSheen[] = {"flat", "satin", "gloss"};
constexpr std::string_view kSizes[] = {"small", "medium", "large"};
constexpr std::string_view kBoards[] = {"2x4 8 ft", "2x4 10 ft", "2x6 8 ft", "4x4 8 ft"};
constexpr std::string_view kFeet[] = {"25 ft", "50 ft", "100 ft"};
constexpr std::string_view kGrit[] = {"60 grit", "120 grit", "220 grit"};
constexpr std::string_view kWatts[] = {"40 W", "60 W", "100 W"};

constexpr Goods kShelves[] = {{"Claw hammer", 890, kHammers},
                              {"Wood screws, box", 410, kLengths},
                              {"Copper pipe", 675, kDiameters},
                              {"Exterior paint, gallon", 1720, kColors},
                              {"Interior paint, gallon", 1480, kSheen},
                              {"Work gloves", 520, kSizes},
                              {"Fir stud", 285, kBoards},
                              {"Garden hose", 1190, kFeet},
                              {"Sandpaper, pack", 260, kGrit},
                              {"Finishing nails, box", 330, kLengths},
                              {"Light bulbs, pair", 195, kWatts},
                              {"Extension cord", 980, kFeet},
                              {"Pipe wrench", 1640, kSizes},
                              {"Hinge, pair", 375, kSizes},
                              {"Spray paint", 310, kColors},
                              {"Rope, nylon", 720, kFeet},
                              {"Ball valve, brass", 860, kDiameters},
                              {"Carpenter's square", 640, kSizes},
                              {"Tarpaulin", 1130, kSizes},
                              {"Machine bolts, box", 450, kLengths},
                              {"Paint brush", 390, kSizes},
                              {"Padlock", 760, kSizes},
                              {"Galvanized bucket", 690, kSizes},
                              {"Shelf bracket", 215, kSizes}};

constexpr Account kAccounts[] = {
    {"1000", "Checking", "Bank", "Redwood Savings, main account"},
    {"1010", "Savings", "Bank", "Money for slow months"},
    {"1020", "Petty Cash", "Bank", "The drawer in the office"},
    {"1100", "Accounts Receivable", "AccountsReceivable", "What customers owe"},
    {"1200", "Inventory Asset", "OtherCurrentAsset", "Goods on the shelves"},
    {"1210", "Undeposited Funds", "OtherCurrentAsset", "Checks on their way to the bank"},
    {"1500", "Store Fixtures", "FixedAsset", "Shelves, counters and scales"},
    {"1510", "Delivery Truck", "FixedAsset", ""},
    {"2000", "Accounts Payable", "AccountsPayable", "What we owe vendors"},
    {"2100", "Company Card", "CreditCard", ""},
    {"2200", "Sales Tax Payable", "OtherCurrentLiability", "Due to the state each quarter"},
    {"2500", "Truck Loan", "LongTermLiability", ""},
    {"3000", "Opening Balances", "Equity", "What was there when the books began"},
    {"3100", "Owner's Equity", "Equity", ""},
    {"4000", "Merchandise Sales", "Income", ""},
    {"4100", "Service and Delivery", "Income", ""},
    {"4900", "Discounts Given", "Income", "To contractors, mostly"},
    {"5000", "Cost of Goods Sold", "CostOfGoodsSold", ""},
    {"6000", "Rent", "Expense", ""},
    {"6100", "Utilities", "Expense", "Power, water and telephone"},
    {"6200", "Insurance", "Expense", ""},
    {"6300", "Advertising", "Expense", ""},
    {"6400", "Truck and Fuel", "Expense", ""},
    {"6500", "Office Supplies", "Expense", ""}};

}  // namespace

std::span<const std::string_view> FirstNames() { return kFirstNames; }
std::span<const std::string_view> LastNames() { return kLastNames; }
std::span<const std::string_view> Streets() { return kStreets; }
std::span<const City> Cities() { return kCities; }
std::span<const std::string_view> Places() { return kPlaces; }
std::span<const std::string_view> Trades() { return kTrades; }
std::span<const std::string_view> Wares() { return kWares; }
std::span<const std::string_view> Jobs() { return kJobs; }
std::span<const Goods> Shelves() { return kShelves; }
std::span<const Account> Accounts() { return kAccounts; }

}  // namespace ostrel::simulator::words
