# Values of special functions against known ones, at three precisions: within 0.6 units of the last digit of the larger part.
count := 0:
check := proc(c, known)
  local d, v, apart, unit;
  global count;
  for d in [6, 15, 34] do
    v := evalf(c, d);
    count := count + 1;
    if not type(v, complex(numeric)) then print(c, d, v); next end if;
    Digits := 45;
    apart := max(abs(Re(v) - Re(known)), abs(Im(v) - Im(known)));
    unit := 10.^(max(ilog10(Re(known)), ilog10(Im(known) + 0.)) + 1 - d);
    if apart > 0.6*unit then print(c, d, v, known) end if
  end do
end proc:
Digits := 50:
check('GAMMA(1/3)', 2.678938534707747633655692940974677644129):
check('GAMMA(-201/2)', -3.353690819807678642208099692714592406182e-159):
check('GAMMA(5/2+30*I)', (7.418010432131727890396113062629138483440e-18)+(-2.180902845628617528883695447558534559033e-18)*I):
check('GAMMA(-1+10^(-40))', -1.000000000000000000000000000000000000000e+40):
check('GAMMA(7/2,3)', 1.793776527435668328169733451278392472046):
check('GAMMA(-2,1/10)', 4.162914579082787612543166450423556342332e+1):
check('lnGAMMA(10^20+1/3)', 4.505170185988091368029226564258619602331e+21):
check('lnGAMMA(1+10^(-30))', -5.772156649015328606065120900815799640087e-31):
check('lnGAMMA(-7/2+I)', (-3.636189428681708163595130558479292905980)+(-1.116742098124260777151930393400580574271e+1)*I):
check('Psi(1/7)', -7.363980242224343198549515303016881047820):
check('Psi(3,-5/3)', 5.193364165438142417557707623221055926354e+2):
check('Psi(146163214496836234/10^17)', -1.221840594558196422056324299397808653771e-18):
check('Beta(1/3,2/7)', 5.829930076750349290116846363321158791722):
check('Zeta(3)', 1.202056903159594285399738161511449990765):
check('Zeta(1/2+20*I)', (4.299138604378433721577396706245034568405e-1)+(-1.064291443080589112727395193068938474842)*I):
check('Zeta(-7/2)', 4.441011335479431958534658017819775086214e-3):
check('Zeta(1+10^(-25))', 1.000000000000000000000000057721566490153e+25):
check('Zeta(0,3/2,7/3)', 1.464254249199488108370634115638738357446):
check('Zeta(1,3)', -1.981262428856368533306818215032857968755e-1):
check('erf(1/3)', 3.626481117660629334081786401478658796921e-1):
check('erfc(20)', 5.395865611607900928934999167905345604088e-176):
check('erf(1+2*I)', (-5.366435657785650339917955593141927494421e-1)+(-5.049143703447034669543036958614140565553)*I):
check('erfi(7/2)', 3.528228771517168531015799721641242794918e+4):
check('Ei(1/2)', 4.542199048631735799205238126628023652814e-1):
check('Ei(-80)', -2.228543258688472911218144758735855411290e-37):
check('Ei(37250741078136663/10^17)', -1.738488291513527029797651056108137890154e-17):
check('Ei(3,2)', 3.013337979781589318747992296985684292517e-2):
check('Si(100)', 1.562225466889056293352345138804502677228):
check('Ci(100)', -5.148825142610492144443553905344497850326e-3):
check('Ci(-2)', (4.229808287748649956985651531982558941357e-1)+(3.141592653589793238462643383279502884197)*I):
check('Shi(3)', 4.973440475859806797710418382522705142970):
check('Chi(3)', 4.960392094765609760297917636694060120021):
check('Li(1000)', 1.776096579901522266876406239486993179786e+2):
check('dilog(1/3)', 8.332718864773899574410124619689003974407e-1):
check('dilog(-3)', (2.061309466777317416691441452150908859157)+(-4.355172180607204261001377796475227894677)*I):
check('polylog(3,9/10)', 1.049658950186439869645832493210100070438):
check('polylog(1/2,-5)', -1.297265404819418480310677264990780390499):
check('polylog(4,50*I)', (-1.302385108148702424490263133391258655383e+1)+(2.327482593736963247385295669541173783744e+1)*I):
check('LambertW(1/3)', 2.576276530497367042829162016260977909097e-1):
check('LambertW(-1,-1/5)', -2.542641357773526424293806156661848290161):
check('LambertW(2,-3+I)', (-1.472452961547029673459901844509287803917)+(1.370841428973400095968514113112023591223e+1)*I):
check('LambertW(10^100)', 2.248431064451185015393731343379556754108e+2):
check('BesselJ(0,24)', -5.623027416685926701477611803416836171344e-2):
check('BesselJ(0,2404825557695772768621631879326/10^30)', 2.360268401116086830464470887546893493912e-31):
check('BesselJ(7/3,5000)', 1.031407012179795261551038283285501076020e-2):
check('BesselJ(100,3)', 4.260360181132625247430060323584219905804e-141):
check('BesselY(2,1/10)', -1.276447832426901729099186608696129220871e+2):
check('BesselY(1/3,-2)', (1.715999831301721711307495886565565124361e-1)+(1.457199287891557832220176955471721081652e-1)*I):
check('BesselI(1/2+I,3)', (5.479494098982964876384464431325774787998)+(-1.272404320688087023287839795199192937945)*I):
check('BesselK(0,60)', 1.413897840559107809095646298241701203162e-27):
check('BesselK(5,2-3*I)', (6.525779545246481929700503581159298693513e-1)+(-4.302812585930913074914113443778024939239e-1)*I):
check('AiryAi(-30)', -8.796818845684216283262385832389778310727e-2):
check('AiryAi(30)', 3.208217591550495571075286933184752796567e-49):
check('AiryBi(2+5*I)', (9.186702408679929965960700723208406500250e-1)+(-5.323100120341309300414844811672734559578e-1)*I):
check('AiryBi(1,-4)', -1.166705674383408936795672429766645983333e-1):
check('EllipticK(9999/10000)', 5.645148216829692788003416714872978396820):
check('EllipticE(3)', (2.655964076372758141684508002976353241244e-1)+(2.498348127732516536096773752365510565100)*I):
check('EllipticPi(-2,1/3)', 9.264756511489292138556405628896598669582e-1):
check('EllipticF(4/5,1/3)', 9.401604861086265235675772514913244483667e-1):
check('EllipticE(4/5,1/3)', 9.147261943025378045581067966841484642037e-1):
check('EllipticPi(1/2,1/5,1/3)', 5.355736455995415875849783634786189088925e-1):
check('LegendreP(1/2,1/3)', 7.172881740725019229356759713758587271260e-1):
check('HermiteH(1/3,2)', 1.607106339021098315655084759804089179424):
check('JacobiP(1/2,1/3,1/4,1/5)', 7.508347256743087052223120100387352846770e-1):
check('hypergeom([1/2,1/3],[1/4],-7)', 2.144304987923326172579980556712935385744e-1):
check('hypergeom([1/2,1/3],[1/4],3)', (-3.725891651801860057814335795618460547437e-1)+(-6.975286564888761442186620728488126368370e-1)*I):
check('hypergeom([1,1],[2],1/2+4/5*I)', (9.425742283427586843116771037811145352259e-1)+(5.162752575542544716209435844263970871428e-1)*I):
check('hypergeom([1/3],[2/3],-40)', 1.486449675095410388252468693435402718849e-1):

Digits := 10: count;

# Identities between values that are computed in different ways, for arguments of many kinds.
same := proc(name, a, b, scale)
  local size;
  # The last argument is the size of what cancels.
  size := evalf(abs(a)) + evalf(abs(b)) + `if`(nargs = 4, evalf(abs(scale)), 0);
  if not (evalf(abs(a - b)) <= size*10.^(3 - Digits)) then print(name, evalf(a), evalf(b), Digits) end if
end proc:
for Digits in [10, 40] do
  for z in [0.3, 2.75, -3.4, 12.5 + 3.*I, -0.2 - 1.7*I, 1e-7, 1. + 40.*I] do
    same("reflection", GAMMA(z)*GAMMA(1 - z)*evalf(sin(Pi*z)), evalf(Pi));
    same("duplication", GAMMA(z)*GAMMA(z + 0.5), evalf(2^(1 - 2*z)*Pi^(1/2))*GAMMA(2*z));
    same("Psi", Psi(z + 1) - Psi(z), 1/z, Psi(z));
    same("Psi 2", Psi(2, z + 1) - Psi(2, z), 2/z^3, Psi(2, z));
    same("conjugate", lnGAMMA(Re(z) - I*(Im(z) + 1.)), conjugate(lnGAMMA(Re(z) + I*(Im(z) + 1.))));
    same("erf", erf(z), 1 - erfc(z), 1);
    same("Si", Si(-z), -Si(z));
    same("W", LambertW(z)*evalf(exp(LambertW(z))), z);
    same("W 2", LambertW(2, z)*evalf(exp(LambertW(2, z))), z);
    same("Wronskian", BesselJ(1.5, z)*BesselY(0.5, z) - BesselJ(0.5, z)*BesselY(1.5, z), evalf(2/(Pi*z)), BesselJ(1.5, z)*BesselY(0.5, z));
    same("Wronskian 2", BesselI(3, z)*BesselK(2, z) + BesselI(2, z)*BesselK(3, z), 1/z, BesselI(3, z)*BesselK(2, z));
    same("Airy", AiryAi(z)*AiryBi(1, z) - AiryAi(1, z)*AiryBi(z), evalf(1/Pi), AiryAi(z)*AiryBi(1, z));
    same("zeta", Zeta(0, 3, z) - Zeta(0, 3, z + 1), 1/z^3, Zeta(0, 3, z));
    same("polylog", polylog(3, z) + polylog(3, -z), polylog(3, z^2)/4, polylog(3, z));
    if not type(z, negative) then same("dilog", dilog(z) + evalf(ln(z))^2/2, -dilog(1/z), dilog(z)) end if
  end do;
  for z in [0.2, 0.9, 0.999, 0.5 + 0.25*I] do
    same("Legendre", EllipticE(z)*EllipticK((1 - z^2)^0.5) + EllipticE((1 - z^2)^0.5)*EllipticK(z) - EllipticK(z)*EllipticK((1 - z^2)^0.5), evalf(Pi/2), EllipticK(z));
    same("Euler", hypergeom([1/3, 2/5], [3/2], z), (1 - z)^(3/2 - 1/3 - 2/5)*hypergeom([3/2 - 1/3, 3/2 - 2/5], [3/2], z))
  end do
end do: z := 'z': Digits := 10:

# On a cut the value is that from above for the negative axis, and from below for what is cut beyond 1.
side := proc(f, x, s) local a, b; a := f(x); b := f(x + s*1e-12*I); if abs(a - b) > 1e-7*abs(a) then print(x, a, b) end if end proc:
side(lnGAMMA, -2.5, 1): side(LambertW, -3., 1): side(Ci, -2., 1): side(dilog, -2., 1): side(x -> polylog(3, x), 2.5, -1):
side(x -> polylog(3, x), 300., -1): side(x -> BesselY(1/3, x), -2., 1): side(x -> BesselK(0, x), -70., 1): side(x -> BesselJ(1/2, x), -3., 1):
side(x -> hypergeom([1/2, 1/3], [1/4], x), 3., -1): side(EllipticK, 2., -1): side(x -> GAMMA(1/3, x), -2., 1):

# Poles are numeric events: an error where all is exact, an infinite float else.
GAMMA(0); GAMMA(-3); lnGAMMA(-1); Psi(-2); Psi(1, 0); Zeta(1); Zeta(0, 1); Ei(0); Li(1); BesselK(0, 0); EllipticK(1); Beta(0, 2);
GAMMA(0.), GAMMA(-3.), Psi(-2.), Zeta(1.), Ei(0.), Ci(0.), Li(1.), BesselY(1, 0.), BesselK(2, 0.), EllipticK(-1.), polylog(1/2, 1.), LambertW(1, 0.);
NumericStatus(division_by_zero = false): GAMMA(-1.): NumericStatus(division_by_zero);
NumericEventHandler(division_by_zero = proc(f, a, d) pole(f, a) end): GAMMA(-1), Zeta(1.); NumericEventHandler(default):
GAMMA(1e12), erfc(1e8), GAMMA(-1e8 - 0.5), Beta(1e15, 1e15), Beta(1e7, 2e7), BesselK(0, 1e9);

# Wrong counts and kinds.
GAMMA(); GAMMA(1, 2, 3); erf(1, 2); BesselJ(1); Zeta(1, 2, 3, 4); LegendreP(1); JacobiP(1, 2); hypergeom([1], [2]); hypergeom(1, 2, 3);
GAMMA([1]); erf("a"); Psi(x = 1); EllipticE({});

# Infinities, undefined values, what stays.
erf(Float(infinity)), erf(-Float(infinity)), GAMMA(Float(infinity)), Ei(-Float(infinity)), BesselK(0, Float(infinity)), Si(Float(infinity)), erf(Float(undefined));
GAMMA(x), erf(2*x), evalf(GAMMA(x)), evalf(BesselJ(1/3, x)), GAMMA(1/3), Zeta(3), LambertW(2), EllipticF(1/2, 1/3), hypergeom([1/2], [1/3], 2);
