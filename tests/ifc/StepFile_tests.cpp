#include "ifc/StepFile.h"

#include <gtest/gtest.h>

#include "ifc/StepChanges.h"

namespace kalvrooms::ifc {
namespace {

std::string fileOf(const std::string& data) {
    return "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('IFC4'));\nENDSEC;\nDATA;\n" + data +
           "ENDSEC;\nEND-ISO-10303-21;\n";
}

// What a text is refused with; empty when it is read.
std::string refusal(const std::string& text) {
    try {
        const StepFile file(text);
    } catch (const StepError& error) {
        return error.what();
    }
    return {};
}

TEST(StepFile, FindsInstancesByTheirNumberWhateverTheirOrder) {
    const StepFile file(fileOf("#20=IFCB(#3);\n#3=IFCA(1.);\n"));
    EXPECT_EQ(file.Schema(), "IFC4");
    EXPECT_TRUE(file.Get(3).Is("IFCA"));
    EXPECT_TRUE(file.Get(20).Follow(0).Is("IFCA"));
    EXPECT_FALSE(file.Has(4));
    EXPECT_EQ(file.OfType("IFCA"), std::vector<InstanceId>{3});
    EXPECT_EQ(file.HighestId(), 20u);
}

TEST(StepFile, TakesAnyLayoutOfLinesAndComments) {
    const StepFile file(fileOf("#1\n = /* a ';' in a comment */ Ifca\r\n (\n 1.5 ,/*x*/'a;''(b' , "
                               "( #1 ,\n#2 ) , .T. , $ , * ) ;#2=IFCA();\n"));
    const Instance instance = file.Get(1);
    EXPECT_TRUE(instance.Is("IFCA"));
    EXPECT_EQ(instance.Arguments().Count(), 6u);
    EXPECT_EQ(instance[0].Number(), 1.5);
    EXPECT_EQ(instance[1].Text(), L"a;'(b");
    EXPECT_EQ(instance[2].Count(), 2u);
    EXPECT_EQ(instance[2][1].Reference(), 2u);
    EXPECT_TRUE(instance[3].IsTrue());
    EXPECT_TRUE(instance[4].IsNull());
    EXPECT_TRUE(instance[5].IsNull());
    EXPECT_TRUE(instance[6].IsNull()) << "an argument that is not there";
    EXPECT_EQ(file.Get(2).Arguments().Count(), 0u);
}

TEST(StepFile, ReadsNumbersTypedValuesAndWords) {
    const StepFile file(
        fileOf("#1=IFCA(-12,1.E-3,.25,IFCLABEL('x'),.MILLI.,+3.,IFCAREAMEASURE(2.));\n"));
    const Instance instance = file.Get(1);
    EXPECT_EQ(instance[0].Integer(), -12);
    EXPECT_EQ(instance[1].Number(), 0.001);
    EXPECT_EQ(instance[2].Number(), 0.25);
    EXPECT_EQ(instance[3].Type(), "IFCLABEL");
    EXPECT_EQ(instance[3].Untyped().Text(), L"x");
    EXPECT_EQ(instance[4].Word(), "MILLI");
    EXPECT_EQ(instance[5].Number(), 3.0);
    EXPECT_EQ(instance[6].Untyped().Number(), 2.0);
}

TEST(StepFile, AComplexInstanceHasItsPartsAsArguments) {
    const StepFile file(fileOf("#1=(IFCA(1.)IFCB('x') IFCC());\n#2=IFCA(#1);\n"));
    const Instance instance = file.Get(1);
    EXPECT_TRUE(instance.Keyword().empty());
    EXPECT_EQ(instance.Arguments().Count(), 3u);
    EXPECT_EQ(instance[1].Type(), "IFCB");
    EXPECT_EQ(instance[1][0].Text(), L"x");
    EXPECT_EQ(file.OfType("IFCA"), std::vector<InstanceId>{2});
}

TEST(StepFile, AWrongArgumentIsNamedWithLineAndInstance) {
    const StepFile file(fileOf("#1=IFCA(1.);\n#7=IFCB(#1,\n'x',#99);\n"));
    const auto trouble = [](const auto& step) {
        try {
            step();
        } catch (const StepError& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(trouble([&] { file.Get(7)[1].Number(); }),
              "line 8, #7: a number is expected, not 'x'");
    EXPECT_EQ(trouble([&] { file.Get(7).Follow(2); }),
              "line 8, #7: the instance is missing, not #99");
    EXPECT_EQ(trouble([&] { file.Get(1)[3].Reference(); }),
              "line 6, #1: a reference to an instance is expected and missing");
}

TEST(StepFile, RefusesATextWhoseInstancesCannotBeToldApart) {
    EXPECT_EQ(refusal("PK\x03\x04"), "line 1: the text is no file after ISO 10303-21");
    EXPECT_EQ(refusal(""), "line 1: the text is no file after ISO 10303-21");
    EXPECT_EQ(refusal(fileOf("#1=IFCA('a);\n#2=IFCA('b');\n")),
              "line 6, #1: a text without an end");
    EXPECT_EQ(refusal(fileOf("#1=IFCA(\n/* (1.);\n")), "line 7, #1: a comment without an end");
    EXPECT_EQ(refusal(fileOf("#1=IFCA((1.);\n")), "line 6, #1: a parenthesis without its end");
    EXPECT_EQ(refusal(fileOf("#1=IFCA(1.));\n")), "line 6, #1: a parenthesis too many");
    EXPECT_EQ(refusal(fileOf("#1=IFCA;\n")), "line 6, #1: the instance has no arguments");
    EXPECT_EQ(refusal(fileOf("#1 IFCA();\n")),
              "line 6, #1: '=' is expected behind the number of the instance");
    EXPECT_EQ(refusal(fileOf("#99999999999=IFCA();\n")),
              "line 6: a number of an instance that cannot be one");
    EXPECT_EQ(refusal(fileOf("#1=IFCA();\n#2=IFCA();\n#1=IFCB();\n")),
              "line 8, #1: the instance stands there twice");
    EXPECT_EQ(refusal("ISO-10303-21;\nDATA;\n#1=IFCA(1."),
              "line 3, #1: the file ends within a statement");
    EXPECT_EQ(refusal("ISO-10303-21;\nDATA;\n#1=IFCA(1.);\n"),
              "line 3, #1: the file ends within its data");
}

TEST(StepFile, RefusesListsThatAreNestedWithoutEnd) {
    const std::string deep(1'000'000, '(');
    EXPECT_EQ(refusal(fileOf("#1=IFCA" + deep)), "line 6, #1: lists nested too deep");
}

TEST(StepFile, KnowsWhatOnlyOneInstanceUses) {
    const StepFile file(fileOf("#1=IFCA();\n#2=IFCB(#1,#11);\n#11=IFCB(#12);\n#12=IFCB(#11);\n"));
    EXPECT_TRUE(file.IsUsedOnce(1));
    EXPECT_TRUE(file.IsUsedOnce(2)) << "nobody's";
    EXPECT_FALSE(file.IsUsedOnce(11));
}

TEST(StepChanges, ChangeTheirArgumentsAndLeaveEveryOtherByte) {
    const std::string text = fileOf("#1 = IFCA( 'a' ,/*1*/ $,(1.)) ;\r\n#2=IFCB(#1);\n");
    const StepFile file(text);
    StepChanges changes(file);
    EXPECT_EQ(changes.Text(), text);
    changes.Set(1, 1, "'new'");
    changes.Set(2, 3, "#3");
    EXPECT_EQ(changes.Add("IFCC(2.)"), 3u);
    EXPECT_EQ(changes.Text(), fileOf("#1 = IFCA( 'a' ,/*1*/ 'new',(1.)) ;\r\n#2=IFCB(#1,$,$,#3);\n"
                                     "#3=IFCC(2.);\n"));
}

TEST(StepChanges, NewInstancesGoBeforeTheEndOfTheDataWithTheFilesLineEnds) {
    const StepFile file("ISO-10303-21;\r\nHEADER;\r\nENDSEC;\r\nDATA;\r\n#5=IFCA();\r\nENDSEC;\r\n"
                        "END-ISO-10303-21;\r\n");
    StepChanges changes(file);
    changes.Add("IFCB('ENDSEC;')");
    EXPECT_EQ(changes.Text(), "ISO-10303-21;\r\nHEADER;\r\nENDSEC;\r\nDATA;\r\n#5=IFCA();\r\n"
                              "#6=IFCB('ENDSEC;');\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n");
}

} // namespace
} // namespace kalvrooms::ifc
